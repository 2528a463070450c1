#include "cli/Words.h"

#include <algorithm>
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

std::size_t widthOf(std::string_view text) {
  return static_cast<std::size_t>(
      std::ranges::count_if(text, [](char c) { return (static_cast<unsigned char>(c) & 0xc0) != 0x80; }));
}

std::string padded(std::string text, std::size_t width) {
  text.resize(std::max(text.size(), width), ' ');
  return text;
}

std::string cut(const std::string& text, std::size_t width) {
  if (width == 0 || widthOf(text) <= width) return text;
  std::size_t end = 0;
  for (std::size_t columns = 0; columns + 2 < width; ++columns) {
    do {
      ++end;
    } while ((static_cast<unsigned char>(text[end]) & 0xc0) == 0x80);
  }
  return text.substr(0, end) + "..";
}

std::string wrapped(const std::string& text, std::size_t width) {
  constexpr std::string_view kIndent = "    ";
  std::string out;
  std::string line;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t word = std::min(text.find_first_not_of(' ', at), text.size());
    const std::size_t end = std::min(text.find(' ', word), text.size());
    if (width > 0 && widthOf(line) > kIndent.size() &&
        widthOf(line) + widthOf(text.substr(at, end - at)) > width) {
      out += line + "\n";
      line = kIndent;
      at = word;
    }
    line += text.substr(at, end - at);
    at = end;
  }
  return out + line;
}

}  // namespace ZebManager
