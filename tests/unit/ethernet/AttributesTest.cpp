#include <gtest/gtest.h>

#include "MessageBuilder.h"
#include "netlink/Attributes.h"

namespace ZEB::ethernet::test {
namespace {

constexpr AttributePolicy kPolicy{
    {1, AttributeKind::U8},  {2, AttributeKind::U16},  {3, AttributeKind::U32},
    {4, AttributeKind::U64}, {5, AttributeKind::Text}, {6, AttributeKind::Binary},
};

TEST(Attributes, GivesEachKind) {
  MessageBuilder builder;
  builder.number(1, std::uint8_t{7}).number(2, std::uint16_t{700}).number(3, std::uint32_t{70000});
  builder.number(4, std::uint64_t{7000000000}).text(5, "seven").bytes(6, {1, 2, 3});
  const Attributes attributes(builder.view(), kPolicy);
  EXPECT_EQ(attributes.u8(1), 7);
  EXPECT_EQ(attributes.u16(2), 700);
  EXPECT_EQ(attributes.u32(3), 70000u);
  EXPECT_EQ(attributes.u64(4), 7000000000u);
  EXPECT_EQ(attributes.text(5), "seven");
  EXPECT_EQ(attributes.bytes(6)->size(), 3u);
}

TEST(Attributes, NumberOfAnotherSizeIsAbsent) {
  MessageBuilder builder;
  builder.number(3, std::uint16_t{7}).number(1, std::uint32_t{7});
  const Attributes attributes(builder.view(), kPolicy);
  EXPECT_FALSE(attributes.has(3));
  EXPECT_FALSE(attributes.has(1));
}

TEST(Attributes, UnknownAttributesArePassedOver) {
  MessageBuilder builder;
  builder.number(79, std::uint32_t{1}).number(0x3FF0, std::uint32_t{1}).number(1, std::uint8_t{9});
  const Attributes attributes(builder.view(), kPolicy);
  EXPECT_EQ(attributes.u8(1), 9);
  EXPECT_FALSE(attributes.has(79));
  EXPECT_FALSE(attributes.has(0x3FF0));
}

TEST(Attributes, LastOfSeveralCounts) {
  MessageBuilder builder;
  builder.number(1, std::uint8_t{1}).number(1, std::uint8_t{2});
  EXPECT_EQ(Attributes(builder.view(), kPolicy).u8(1), 2);
}

TEST(Attributes, FlagBitsOfTheTypeDoNotCount) {
  MessageBuilder builder;
  builder.number(1 | NLA_F_NESTED, std::uint8_t{1}).number(2 | NLA_F_NET_BYTEORDER, std::uint16_t{2});
  const Attributes attributes(builder.view(), kPolicy);
  EXPECT_EQ(attributes.u8(1), 1);
  EXPECT_EQ(attributes.u16(2), 2);
}

TEST(Attributes, TextEndsAtTheFirstZeroAndNeedsNone) {
  MessageBuilder builder;
  builder.attribute(5, "ab\0cd", 5);
  EXPECT_EQ(Attributes(builder.view(), kPolicy).text(5), "ab");
  MessageBuilder bare;
  bare.attribute(5, "abc", 3);
  EXPECT_EQ(Attributes(bare.view(), kPolicy).text(5), "abc");
}

TEST(Attributes, LengthPastTheEndEndsTheList) {
  MessageBuilder builder;
  builder.number(1, std::uint8_t{1}).raw(nlattr{100, 2}).raw(std::uint32_t{5});
  const Attributes attributes(builder.view(), kPolicy);
  EXPECT_EQ(attributes.u8(1), 1);
  EXPECT_FALSE(attributes.has(2));
}

TEST(Attributes, LengthBelowTheHeaderEndsTheList) {
  MessageBuilder builder;
  builder.raw(nlattr{0, 1}).number(1, std::uint8_t{1});
  EXPECT_FALSE(Attributes(builder.view(), kPolicy).has(1));
}

TEST(Attributes, EveryTruncationIsHarmless) {
  MessageBuilder builder;
  builder.number(1, std::uint8_t{1}).text(5, "seven").number(3, std::uint32_t{3});
  for (std::size_t size = 0; size < builder.view().size(); ++size) {
    const Attributes attributes(builder.view().first(size), kPolicy);
    EXPECT_FALSE(attributes.has(3)) << size;
  }
}

TEST(Leading, NeedsTheWholeStructure) {
  MessageBuilder builder;
  builder.raw(std::uint32_t{0x01020304}).raw(std::uint8_t{9});
  EXPECT_EQ(leading<std::uint32_t>(builder.view()), 0x01020304u);
  EXPECT_FALSE(leading<std::uint64_t>(builder.view()));
  EXPECT_EQ(following(builder.view(), 4).size(), 1u);
  EXPECT_TRUE(following(builder.view(), 5).empty());
}

}  // namespace
}  // namespace ZEB::ethernet::test
