#include <gtest/gtest.h>

#include "values/DateTimeText.h"

namespace ZebManager {
namespace {

TEST(DateTimeText, WritesTimesInUtc) {
  EXPECT_EQ(formatDateTime({0, false}), "19700101000000.000000+000");
  // 1 March 2024 12:34:56.789012 is 19,783 days and 45,296.789012 seconds after the epoch.
  EXPECT_EQ(formatDateTime({(19'783ULL * 86'400 + 45'296) * 1'000'000 + 789'012, false}),
            "20240301123456.789012+000");
}

TEST(DateTimeText, WritesIntervals) {
  EXPECT_EQ(formatDateTime({0, true}), "00000000000000.000000:000");
  EXPECT_EQ(formatDateTime({(2ULL * 86'400 + 3 * 3600 + 4 * 60 + 5) * 1'000'000 + 6, true}),
            "00000002030405.000006:000");
}

TEST(DateTimeText, WhatTheFormCannotHoldBecomesTheLargest) {
  EXPECT_TRUE(formatDateTime({UINT64_MAX, false}).starts_with("99991231"));
  EXPECT_TRUE(formatDateTime({UINT64_MAX, true}).starts_with("99999999"));
}

TEST(DateTimeText, ReadsWhatItWrites) {
  for (const std::uint64_t micros : {0ULL, 1ULL, 1'700'000'000'123'456ULL, 253'402'300'799'999'999ULL}) {
    for (const bool interval : {false, true}) {
      const auto parsed = parseDateTime(formatDateTime({micros, interval}));
      ASSERT_TRUE(parsed);
      EXPECT_EQ(parsed->microseconds, micros);
      EXPECT_EQ(parsed->interval, interval);
    }
  }
}

TEST(DateTimeText, TakesTheOffsetIntoAccount) {
  EXPECT_EQ(parseDateTime("19700101013000.000000+090")->microseconds, 0U);
  EXPECT_EQ(parseDateTime("19700101000000.000000-060")->microseconds, 3'600'000'000U);
}

TEST(DateTimeText, AsterisksAreTheLowestValue) {
  EXPECT_EQ(parseDateTime("1970****000000.******+000")->microseconds, 0U);
  EXPECT_EQ(parseDateTime("00000000000001.******:000")->microseconds, 1'000'000U);
}

TEST(DateTimeText, RefusesWhatIsNoDatetime) {
  for (const char* text :
       {"", "x", "19700101000000.000000", "19700101000000,000000+000", "19701301000000.000000+000",
        "19700230000000.000000+000", "19700101240000.000000+000", "19700101006000.000000+000",
        "19700101000060.000000+000", "1970010100000x.000000+000", "19700101000000.000000+0x0",
        "19700101000000.000000*000", "00000000000000.000000:001", "19700101000000.000000+0000",
        "19700101000000.000000+001"}) {
    EXPECT_FALSE(parseDateTime(text)) << text;
  }
}

}  // namespace
}  // namespace ZebManager
