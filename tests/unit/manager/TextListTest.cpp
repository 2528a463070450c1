// Lists of texts that are much alike: there and back, how small they are, and bytes that are none.
#include <gmock/gmock.h>

#include <vector>

#include "cimxml/TextList.h"

namespace ZebManager {
namespace {

std::vector<std::string> textsIn(std::string_view bytes) {
  std::vector<std::string> texts;
  for (TextListReader reader(bytes); !reader.atEnd();) texts.push_back(reader.next());
  return texts;
}

TEST(TextListTest, TextsComeBackAsTheyWere) {
  const std::vector<std::string> texts = {"",  "aXb", "aYYb", "ab",   "ab", "",
                                          "a", "aa",  "aaa",  "aaaa", "aa", std::string(1000, '\n')};
  TextList list;
  for (const std::string& text : texts) list.append(text);
  EXPECT_EQ(textsIn(list.bytes()), texts);
  EXPECT_EQ(list.count(), 12U);
}

/// What two texts share is kept once: here three lengths and the digits that differ.
TEST(TextListTest, WhatTextsShareTakesNoPlace) {
  const std::string begin(500, '<');
  const std::string end(100, '>');
  TextList list;
  for (int i = 0; i < 1000; ++i) list.append(begin + std::to_string(1000 + i) + end);
  EXPECT_LT(list.bytes().size(), 604U + 1000U * 8U);
}

TEST(TextListTest, NumbersAreTexts) {
  TextList list;
  list.append("4294967295");
  list.append("x");
  TextListReader reader(list.bytes());
  EXPECT_EQ(reader.nextNumber(), 4294967295U);
  EXPECT_THROW(reader.nextNumber(), TextListError);
}

TEST(TextListTest, OtherBytesAreRefused) {
  for (const std::string& bytes : {std::string("\x01\0\0", 3), std::string("\0\x01\0", 3),
                                   std::string("\0\0\x05"
                                               "abc",
                                               6),
                                   std::string("\0\0", 2), std::string(20, '\xff')}) {
    EXPECT_THROW(TextListReader(bytes).next(), TextListError);
  }
  EXPECT_THROW(TextListReader("").next(), TextListError);
}

}  // namespace
}  // namespace ZebManager
