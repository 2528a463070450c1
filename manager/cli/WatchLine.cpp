#include "cli/WatchLine.h"

#include <algorithm>
#include <array>
#include <ctime>

#include "cli/Printable.h"
#include "cli/Words.h"
#include "tree/PropertyView.h"

namespace ZebManager {
namespace {

std::string localTime(std::chrono::system_clock::time_point moment) {
  const std::time_t seconds = std::chrono::system_clock::to_time_t(moment);
  std::tm parts{};
  localtime_r(&seconds, &parts);
  std::array<char, 32> text{};
  const std::size_t length = std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", &parts);
  return {text.data(), length};
}

/// What stands in the parentheses at the end of a description; empty when there are none.
std::string detailOf(const std::string& description) {
  if (!description.ends_with(')')) return {};
  int depth = 0;
  for (std::size_t i = description.size(); i-- > 0;) {
    if (description[i] == ')') ++depth;
    if (description[i] == '(' && --depth == 0) return description.substr(i + 1, description.size() - i - 2);
  }
  return {};
}

Tone toneOfSeverity(std::uint64_t severity) {
  enum : std::uint64_t { kInformation = 2, kWarning = 3, kMinor = 4 };
  if (severity <= kInformation) return Tone::Good;
  return severity <= kMinor ? Tone::Warning : Tone::Bad;
}

void appendAfter(std::string& text, const char* mark, const std::string& more) {
  if (!more.empty()) text += (text.empty() ? "" : mark) + more;
}

std::string adviceOf(const Instance& alert, std::size_t width) {
  std::string lines;
  for (const std::string& action : PropertyView(alert).texts("RecommendedActions")) {
    lines += "\n" + wrapped("  - " + printable(action), width);
  }
  return lines;
}

}  // namespace

std::string severityOf(const PropertyView& view) {
  // The schema's words for warnings and fatal errors are two words for one thing.
  const std::string words = view.meaning("PerceivedSeverity");
  return words.substr(words.starts_with("Degraded/") ? sizeof "Degraded" : 0, words.find("/Non"));
}

std::string placeOf(const PropertyView& view) {
  std::string place = view.text("HWPhysicalLocation");
  const std::string partNumber = view.text("HWPartNumber");
  if (!partNumber.empty() && partNumber != "N/A") appendAfter(place, ", ", "part " + partNumber);
  return place;
}

std::string lineOfAlert(const Instance& alert, std::chrono::system_clock::time_point arrival,
                        const std::string& name, const LineStyle& style) {
  constexpr std::size_t kNameWidth = 8;
  constexpr std::size_t kSeverityWidth = sizeof "Information" - 1;
  const PropertyView view(alert);
  const std::string severity = printable(severityOf(view));
  std::string what = view.text("Summary");
  appendAfter(what, ": ", detailOf(view.text("Description")));
  appendAfter(what, "; ", view.text("UserComment"));
  const std::string place = placeOf(view);
  const std::string head =
      localTime(arrival) + "  " + padded(printable(name.empty() ? "-" : name), kNameWidth) + "  ";
  std::string line = wrapped(head + padded(severity, kSeverityWidth) + "  " +
                                 printable(what + (place.empty() ? "" : "  [" + place + "]")),
                             style.width);
  if (line.compare(head.size(), severity.size(), severity) == 0) {
    line.replace(head.size(), severity.size(),
                 toned(severity, toneOfSeverity(view.number("PerceivedSeverity").value_or(0)), style.colour));
  }
  return style.advice ? line + adviceOf(alert, style.width) : line;
}

}  // namespace ZebManager
