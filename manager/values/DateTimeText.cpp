#include "values/DateTimeText.h"

#include <array>
#include <charconv>
#include <chrono>
#include <cstdio>

namespace ZebManager {
namespace {

constexpr std::uint64_t kSecond = 1'000'000;
constexpr std::uint64_t kMinute = 60 * kSecond;
constexpr std::uint64_t kHour = 60 * kMinute;
constexpr std::uint64_t kDay = 24 * kHour;
constexpr std::size_t kLength = 25;
constexpr std::uint64_t kMostDays = 99'999'999;

/// A field of digits, or of asterisks, which stand for what is not known.
std::optional<unsigned> field(std::string_view text, std::size_t start, std::size_t length, unsigned lowest,
                              unsigned highest) {
  const std::string_view digits = text.substr(start, length);
  if (digits.find_first_not_of('*') == std::string_view::npos) return lowest;
  unsigned value = 0;
  if (digits.find_first_not_of("0123456789") != std::string_view::npos) return std::nullopt;
  std::from_chars(digits.data(), digits.data() + digits.size(), value);
  return value >= lowest && value <= highest ? std::optional(value) : std::nullopt;
}

std::optional<std::uint64_t> timeOfDay(std::string_view text) {
  const auto hours = field(text, 8, 2, 0, 23);
  const auto minutes = field(text, 10, 2, 0, 59);
  const auto seconds = field(text, 12, 2, 0, 59);
  const auto micros = field(text, 15, 6, 0, 999'999);
  if (!hours || !minutes || !seconds || !micros || text[14] != '.') return std::nullopt;
  return *hours * kHour + *minutes * kMinute + *seconds * kSecond + *micros;
}

std::optional<DateTimeBody> parseInterval(std::string_view text, std::uint64_t rest) {
  const auto days = field(text, 0, 8, 0, kMostDays);
  if (!days || text.substr(22) != "000") return std::nullopt;
  return DateTimeBody{*days * kDay + rest, true};
}

std::optional<DateTimeBody> parseTime(std::string_view text, std::uint64_t rest) {
  const auto years = field(text, 0, 4, 0, 9999);
  const auto months = field(text, 4, 2, 1, 12);
  const auto days = field(text, 6, 2, 1, 31);
  const auto offset = field(text, 22, 3, 0, 999);
  if (!years || !months || !days || !offset) return std::nullopt;
  const std::chrono::year_month_day date{std::chrono::year(static_cast<int>(*years)),
                                         std::chrono::month(*months), std::chrono::day(*days)};
  if (!date.ok()) return std::nullopt;
  const auto day = std::chrono::sys_days(date).time_since_epoch().count();
  const auto local =
      static_cast<std::int64_t>(day) * static_cast<std::int64_t>(kDay) + static_cast<std::int64_t>(rest);
  const auto shift = static_cast<std::int64_t>(*offset * kMinute);
  const std::int64_t utc = text[21] == '+' ? local - shift : local + shift;
  if (utc < 0) return std::nullopt;
  return DateTimeBody{static_cast<std::uint64_t>(utc), false};
}

}  // namespace

std::string formatDateTime(const DateTimeBody& value) {
  std::array<char, 64> text{};
  const auto hours = static_cast<unsigned>(value.microseconds % kDay / kHour);
  const auto minutes = static_cast<unsigned>(value.microseconds % kHour / kMinute);
  const auto seconds = static_cast<unsigned>(value.microseconds % kMinute / kSecond);
  const auto micros = static_cast<unsigned>(value.microseconds % kSecond);
  const std::uint64_t days = value.microseconds / kDay;
  if (value.interval) {
    std::snprintf(text.data(), text.size(), "%08u%02u%02u%02u.%06u:000",
                  static_cast<unsigned>(std::min(days, kMostDays)), hours, minutes, seconds, micros);
  } else {
    // The last day that the form can name stands for all that come after it.
    const auto last = std::chrono::sys_days(std::chrono::year(9999) / 12 / 31).time_since_epoch().count();
    const auto count = static_cast<int>(std::min(days, static_cast<std::uint64_t>(last)));
    const std::chrono::year_month_day date{std::chrono::sys_days(std::chrono::days(count))};
    std::snprintf(text.data(), text.size(), "%04d%02u%02u%02u%02u%02u.%06u+000",
                  static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                  static_cast<unsigned>(date.day()), hours, minutes, seconds, micros);
  }
  return text.data();
}

std::optional<DateTimeBody> parseDateTime(std::string_view text) {
  if (text.size() != kLength) return std::nullopt;
  const auto rest = timeOfDay(text);
  if (!rest) return std::nullopt;
  if (text[21] == ':') return parseInterval(text, *rest);
  if (text[21] == '+' || text[21] == '-') return parseTime(text, *rest);
  return std::nullopt;
}

}  // namespace ZebManager
