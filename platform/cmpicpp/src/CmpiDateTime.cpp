#include "cmpicpp/CmpiDateTime.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <ctime>

namespace CmpiCpp {
namespace {

constexpr std::size_t kTextSize = 25;
constexpr std::uint64_t kPerSecond = 1'000'000;
constexpr std::uint64_t kSecondsPerDay = 86'400;
constexpr std::uint64_t kMaxIntervalDays = 99'999'999;

/// The digits of `text` from `from`, or nothing when one is not a digit.
std::optional<int> number(std::string_view text, std::size_t from, std::size_t digits) {
  int value = 0;
  for (char c : text.substr(from, digits)) {
    if (c < '0' || c > '9') return std::nullopt;
    value = value * 10 + (c - '0');
  }
  return value;
}

std::optional<CmpiDateTime> parseInterval(std::string_view text) {
  const auto days = number(text, 0, 8), hours = number(text, 8, 2), minutes = number(text, 10, 2),
             seconds = number(text, 12, 2), micros = number(text, 15, 6);
  if (!days || !hours || !minutes || !seconds || !micros || *hours > 23 || *minutes > 59 || *seconds > 59) {
    return std::nullopt;
  }
  const auto whole = static_cast<std::uint64_t>(*days) * kSecondsPerDay +
                     static_cast<std::uint64_t>(*hours * 3600 + *minutes * 60 + *seconds);
  return CmpiDateTime(whole * kPerSecond + static_cast<std::uint64_t>(*micros), true);
}

std::optional<CmpiDateTime> parseTime(std::string_view text) {
  const auto year = number(text, 0, 4), month = number(text, 4, 2), day = number(text, 6, 2),
             hour = number(text, 8, 2), minute = number(text, 10, 2), second = number(text, 12, 2),
             micros = number(text, 15, 6), offset = number(text, 22, 3);
  if (!year || !month || !day || !hour || !minute || !second || !micros || !offset) return std::nullopt;
  const std::chrono::year_month_day date(std::chrono::year(*year),
                                         std::chrono::month(static_cast<unsigned>(*month)),
                                         std::chrono::day(static_cast<unsigned>(*day)));
  if (!date.ok() || *hour > 23 || *minute > 59 || *second > 60) return std::nullopt;
  std::tm broken{};
  broken.tm_year = *year - 1900;
  broken.tm_mon = *month - 1;
  broken.tm_mday = *day;
  broken.tm_hour = *hour;
  broken.tm_min = *minute - (text[21] == '-' ? -*offset : *offset);
  broken.tm_sec = *second;
  const std::time_t seconds = timegm(&broken);
  if (seconds < 0) return std::nullopt;
  return CmpiDateTime(static_cast<std::uint64_t>(seconds) * kPerSecond + static_cast<std::uint64_t>(*micros),
                      false);
}

}  // namespace

std::optional<CmpiDateTime> CmpiDateTime::parse(std::string_view text) {
  if (text.size() != kTextSize || text[14] != '.') return std::nullopt;
  if (text.substr(21) == ":000") return parseInterval(text);
  if (text[21] == '+' || text[21] == '-') return parseTime(text);
  return std::nullopt;
}

std::string CmpiDateTime::str() const {
  const std::uint64_t seconds = _microseconds / kPerSecond;
  const auto micros = static_cast<unsigned>(_microseconds % kPerSecond);
  std::array<char, 64> text{};
  if (_interval) {
    const std::uint64_t days = std::min(seconds / kSecondsPerDay, kMaxIntervalDays);
    const auto rest = static_cast<unsigned>(seconds % kSecondsPerDay);
    std::snprintf(text.data(), text.size(), "%08u%02u%02u%02u.%06u:000", static_cast<unsigned>(days),
                  rest / 3600, rest / 60 % 60, rest % 60, micros);
  } else {
    const auto when = static_cast<std::time_t>(seconds);
    std::tm broken{};
    gmtime_r(&when, &broken);
    std::snprintf(text.data(), text.size(), "%04d%02d%02d%02d%02d%02d.%06u+000", broken.tm_year + 1900,
                  broken.tm_mon + 1, broken.tm_mday, broken.tm_hour, broken.tm_min, broken.tm_sec, micros);
  }
  return text.data();
}

}  // namespace CmpiCpp
