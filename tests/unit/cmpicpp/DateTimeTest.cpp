#include <gtest/gtest.h>

#include "cmpicpp/CmpiDateTime.h"
#include "cmpicpp/CmpiFactories.h"

namespace CmpiCpp {
namespace {

struct Row {
  std::uint64_t microseconds;
  bool interval;
  const char* text;
};

class DateTimeTest : public testing::TestWithParam<Row> {};

TEST_P(DateTimeTest, toTextAndBack) {
  const CmpiDateTime value(GetParam().microseconds, GetParam().interval);
  EXPECT_EQ(value.str(), GetParam().text);
  EXPECT_EQ(CmpiDateTime::parse(GetParam().text), value);
}

// 1767322800 is 2026-01-02 03:00:00 UTC: 56 years after 1970 with 14 leap days are 20454 days, plus one,
// times 86400, plus three hours.
INSTANTIATE_TEST_SUITE_P(Rows, DateTimeTest,
                         testing::Values(Row{0, false, "19700101000000.000000+000"},
                                         Row{1, false, "19700101000000.000001+000"},
                                         Row{1767322800000000, false, "20260102030000.000000+000"},
                                         Row{1767323045000006, false, "20260102030405.000006+000"},
                                         Row{951782400000000, false, "20000229000000.000000+000"},
                                         Row{0, true, "00000000000000.000000:000"},
                                         Row{93784000005, true, "00000001020304.000005:000"},
                                         Row{8639999999999999999, true, "99999999235959.999999:000"}));

TEST(DateTimeTextTest, anOffsetIsMinutesFromUtc) {
  EXPECT_EQ(CmpiDateTime::parse("19700101010000.000000+060"), CmpiDateTime(0, false));
  EXPECT_EQ(CmpiDateTime::parse("19691231230000.000000-060"), CmpiDateTime(0, false));
  EXPECT_EQ(CmpiDateTime::parse("20260102080000.000000+300")->str(), "20260102030000.000000+000");
}

TEST(DateTimeTextTest, whatIsNoDateTimeIsNothing) {
  for (const char* text : {"",
                           "20260102030405.000006+00",
                           "20260102030405.000006+0000",
                           "20260102030405,000006+000",
                           "2026010203040x.000006+000",
                           "20261302030405.000006+000",
                           "20260002030405.000006+000",
                           "20260132030405.000006+000",
                           "20260100030405.000006+000",
                           "20260231030405.000006+000",
                           "20260102240405.000006+000",
                           "20260102036005.000006+000",
                           "20260102030405.000006*000",
                           "20260102030405.00000x+000",
                           "20260102030405.000006+0x0",
                           "19600102030405.000006+000",
                           "00000001240000.000000:000",
                           "00000001006000.000000:000",
                           "00000001000060.000000:000",
                           "00000001000000.000000:001",
                           "0000000x000000.000000:000",
                           "-0260102030405.000006+000",
                           " 2026010203040.000006+000"}) {
    EXPECT_FALSE(CmpiDateTime::parse(text)) << text;
  }
}

TEST(DateTimeTextTest, anIntervalBeyondTheTextFormKeepsItsSize) {
  EXPECT_EQ(CmpiDateTime(18446744073709551615u, true).str().size(), 25u);
}

TEST(DateTimeFactoryTest, secondsBecomeAPointInTime) {
  const CmpiBroker broker;
  EXPECT_EQ(makeCmpiDateTime(broker, std::int64_t{1}), CmpiDateTime(1000000, false));
  EXPECT_EQ(makeCmpiDateTime(broker, std::int64_t{-1}), CmpiDateTime(0, false));
  EXPECT_EQ(makeCmpiDateTime(broker, std::uint64_t{5}, true), CmpiDateTime(5, true));
}

}  // namespace
}  // namespace CmpiCpp
