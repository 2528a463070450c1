#include "cli/Words.h"

#include <array>

namespace ZebManager {
namespace {

struct StatusRow {
  std::uint64_t status;
  Tone tone;
  const char* link;
};

constexpr std::array kStatus = {
    StatusRow{2, Tone::Good, "link up"},           // OK
    StatusRow{3, Tone::Warning, "link impaired"},  // degraded
    StatusRow{6, Tone::Bad, "no link"},            // error
    StatusRow{15, Tone::Faint, "switched off"},    // dormant
};

const StatusRow* rowOf(std::optional<std::uint64_t> status) {
  for (const StatusRow& row : kStatus) {
    if (status == row.status) return &row;
  }
  return nullptr;
}

struct Unit {
  std::uint64_t size;
  const char* name;
};

constexpr std::array kUnits = {Unit{1'000'000'000, " Gbit/s"}, Unit{1'000'000, " Mbit/s"},
                               Unit{1'000, " kbit/s"}};

}  // namespace

std::string toned(const std::string& text, Tone tone, bool colour) {
  constexpr std::array kSequences = {"", "\x1b[1m", "\x1b[2m", "\x1b[32m", "\x1b[33m", "\x1b[31m"};
  if (!colour || tone == Tone::Plain || text.empty()) return text;
  return kSequences[static_cast<std::size_t>(tone)] + text + "\x1b[0m";
}

Tone toneOfStatus(std::optional<std::uint64_t> status) {
  const StatusRow* const row = rowOf(status);
  return row ? row->tone : Tone::Plain;
}

const char* linkWords(std::optional<std::uint64_t> status) {
  const StatusRow* const row = rowOf(status);
  return row ? row->link : "";
}

std::string speedWords(std::uint64_t bitsPerSecond) {
  if (bitsPerSecond == 0) return {};
  for (const Unit& unit : kUnits) {
    if (bitsPerSecond < unit.size) continue;
    // One decimal place tells 2.5 Gbit/s from 2.
    const std::uint64_t tenths = bitsPerSecond / (unit.size / 10);
    const std::string whole = std::to_string(tenths / 10);
    return (tenths % 10 == 0 ? whole : whole + "." + std::to_string(tenths % 10)) + unit.name;
  }
  return std::to_string(bitsPerSecond) + " bit/s";
}

}  // namespace ZebManager
