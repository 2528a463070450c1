#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "common/Logger.h"

namespace ZEB {
namespace {

struct FormatRow {
  const char* format;
  std::vector<LogArgument> arguments;
  std::string text;
};

void check(const std::vector<FormatRow>& rows) {
  for (const FormatRow& row : rows) {
    EXPECT_EQ(formatLog(row.format, row.arguments.data(), row.arguments.size()), row.text) << row.format;
  }
}

TEST(LogFormatTest, eachConversion) {
  check({
      {"plain", {}, "plain"},
      {"", {}, ""},
      {"%d", {-5}, "-5"},
      {"%i", {7}, "7"},
      {"%u", {8u}, "8"},
      {"%x", {255}, "ff"},
      {"%X", {255}, "FF"},
      {"%s", {"text"}, "text"},
      {"%S", {"text"}, "text"},
      {"%s", {std::string("text")}, "text"},
      {"%s", {std::string_view("te\0xt", 2)}, "te"},
      {"%c", {'x'}, "x"},
      {"%f", {1.5}, "1.500000"},
      {"%g", {1.5}, "1.5"},
      {"%e", {1.5}, "1.500000e+00"},
      {"100%%", {}, "100%"},
      {"%d%%", {5}, "5%"},
  });
}

TEST(LogFormatTest, whatClientsWriteIsBoundedAndBeginsNoLine) {
  const std::string long_(501, 'x');
  check({
      {"f(%s) ends", {"a\nerror: forged"}, "f(a\\x0aerror: forged) ends"},
      {"%s", {"\x1b[2J\r\x7f\t"}, "\\x1b[2J\\x0d\\x7f\\x09"},
      {"%s", {"\xc2\x9b"}, "\\xc2\x9b"},
      {"%s", {"\xc3\xa9"}, "\xc3\xa9"},
      {"%s", {std::string_view("a\0b", 3)}, "a\\x00b"},
      {"%s", {std::string(500, 'x')}, std::string(500, 'x')},
      {"f(%s) failed: %s", {long_, "why"}, "f(" + std::string(500, 'x') + "...) failed: why"},
  });
}

TEST(LogFormatTest, flagsWidthAndPrecision) {
  check({
      {"%5d|", {42}, "   42|"},
      {"%-5d|", {42}, "42   |"},
      {"%05d", {42}, "00042"},
      {"%+d", {42}, "+42"},
      {"%02x", {10}, "0a"},
      {"%#x", {10}, "0xa"},
      {"%5s|", {"ab"}, "   ab|"},
      {"%-5s|", {"ab"}, "ab   |"},
      {"%.1s", {"ab"}, "a"},
      {"%.2f", {1.005}, "1.00"},
      {"%8.3f", {3.14159}, "   3.142"},
  });
}

TEST(LogFormatTest, lengthModifiersArePassedOver) {
  check({
      {"%ld", {std::int64_t{-9}}, "-9"},
      {"%lld", {5}, "5"},
      {"%llu", {std::numeric_limits<std::uint64_t>::max()}, "18446744073709551615"},
      {"%hhu", {std::uint8_t{200}}, "200"},
      {"%zu", {std::size_t{3}}, "3"},
      {"%jd", {4}, "4"},
      {"%ls", {"wide"}, "wide"},
  });
}

TEST(LogFormatTest, extremes) {
  check({
      {"%d", {std::numeric_limits<std::int64_t>::min()}, "-9223372036854775808"},
      {"%u", {std::numeric_limits<std::uint64_t>::max()}, "18446744073709551615"},
      {"%d", {std::numeric_limits<std::uint32_t>::max()}, "4294967295"},
      {"%x", {-1}, "ffffffffffffffff"},
  });
}

TEST(LogFormatTest, anArgumentOfAnotherKindIsWrittenInItsOwnWay) {
  check({
      {"%d", {"text"}, "text"},
      {"%s", {42}, "42"},
      {"%S", {42}, "42"},
      {"%s", {1.5}, "1.5"},
      {"%x", {1.5}, "1.5"},
      {"%f", {"text"}, "text"},
      {"%d", {true}, "1"},
      {"%d", {false}, "0"},
      {"%s", {static_cast<const char*>(nullptr)}, "(null)"},
      {"%n", {5}, "5"},
      {"%p", {5}, "5"},
  });
}

enum class Colour : std::uint8_t { Red = 3 };

TEST(LogFormatTest, anEnumerationIsItsNumber) {
  check({{"%d", {Colour::Red}, "3"}});
}

TEST(LogFormatTest, aConversionWithoutAnArgumentStays) {
  check({
      {"%d", {}, "%d"},
      {"%d and %s", {1}, "1 and %s"},
      {"%5.2f %%", {}, "%5.2f %"},
      {"50%", {1}, "50%"},
      {"%", {}, "%"},
      {"%-", {1}, "%-"},
      {"%l", {1}, "%l"},
  });
}

TEST(LogFormatTest, aSurplusArgumentIsIgnored) {
  check({
      {"no place for it", {1, "two"}, "no place for it"},
      {"%d", {1, 2, 3}, "1"},
  });
}

TEST(LogFormatTest, textIsNeverAFormat) {
  check({{"%s", {"%d %s %n"}, "%d %s %n"}});
}

TEST(LogFormatTest, absurdWidthsDoNoHarm) {
  EXPECT_LT(formatLog("%999999999d", std::vector<LogArgument>{1}.data(), 1).size(), 1000u);
  EXPECT_LT(formatLog("%99999999s", std::vector<LogArgument>{"x"}.data(), 1).size(), 1000u);
}

}  // namespace
}  // namespace ZEB
