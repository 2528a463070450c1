#include "metrics/Exposition.h"

#include <array>
#include <charconv>
#include <cmath>

namespace ZebManager {
namespace {

constexpr std::string_view kTotal = "_total";
constexpr std::string_view kInfo = "_info";
/// Whole numbers up to here are exact.
constexpr double kExact = 9007199254740992.0;

std::string_view without(std::string_view name, std::string_view end) {
  return name.ends_with(end) ? name.substr(0, name.size() - end.size()) : name;
}

const char* typeOf(MetricKind kind, MetricFormat format) {
  if (kind == MetricKind::Counter) return "counter";
  return kind == MetricKind::Info && format == MetricFormat::OpenMetrics ? "info" : "gauge";
}

void addNumber(std::string& text, double value) {
  std::array<char, 32> digits{};
  const bool whole = value == std::floor(value) && std::abs(value) <= kExact;
  const auto end =
      whole ? std::to_chars(digits.data(), digits.data() + digits.size(), static_cast<long long>(value))
            : std::to_chars(digits.data(), digits.data() + digits.size(), value);
  text.append(digits.data(), end.ptr);
}

/// The part of a list up to the separator, without blanks; the rest stays.
std::string_view nextPart(std::string_view& list, char separator) {
  const std::size_t length = std::min(list.find(separator), list.size());
  std::string_view part = list.substr(0, length);
  list.remove_prefix(std::min(length + 1, list.size()));
  while (part.starts_with(' ')) part.remove_prefix(1);
  while (part.ends_with(' ')) part.remove_suffix(1);
  return part;
}

double qualityOf(std::string_view parameters) {
  double quality = 1;
  while (!parameters.empty()) {
    const std::string_view parameter = nextPart(parameters, ';');
    if (parameter.starts_with("q="))
      std::from_chars(parameter.data() + 2, parameter.data() + parameter.size(), quality);
  }
  return quality;
}

}  // namespace

MetricFormat metricFormatFor(std::string_view accept) {
  double open = 0;
  double text = 0;
  while (!accept.empty()) {
    std::string_view parameters = nextPart(accept, ',');
    const std::string_view type = nextPart(parameters, ';');
    if (type == "application/openmetrics-text") open = std::max(open, qualityOf(parameters));
    if (type == "text/plain") text = std::max(text, qualityOf(parameters));
  }
  return open > 0 && open >= text ? MetricFormat::OpenMetrics : MetricFormat::Text;
}

const char* contentTypeOf(MetricFormat format) {
  return format == MetricFormat::Text ? "text/plain; version=0.0.4; charset=utf-8"
                                      : "application/openmetrics-text; version=1.0.0; charset=utf-8";
}

const char* endOf(MetricFormat format) {
  return format == MetricFormat::Text ? "" : "# EOF\n";
}

void Exposition::addLabel(std::string& labels, const char* name, const std::string& value) {
  if (value.empty()) return;
  if (!labels.empty()) labels += ',';
  labels.append(name).append("=\"");
  for (const char c : value) {
    if (c == '\\' || c == '"') labels += '\\';
    if (c == '\n') {
      labels += "\\n";
    } else {
      labels += c;
    }
  }
  labels += '"';
}

void Exposition::begin(const MetricFamily& family) {
  std::string_view name = family.name;
  if (_format == MetricFormat::OpenMetrics) {
    if (family.kind == MetricKind::Counter) name = without(name, kTotal);
    if (family.kind == MetricKind::Info) name = without(name, kInfo);
  }
  _text.append("# HELP ").append(name).append(" ").append(family.help).append("\n# TYPE ");
  _text.append(name).append(" ").append(typeOf(family.kind, _format)).append("\n");
  if (_format == MetricFormat::OpenMetrics && family.unit[0])
    _text.append("# UNIT ").append(name).append(" ").append(family.unit).append("\n");
}

void Exposition::sample(const MetricFamily& family, const std::string& labels, double value) {
  _text.append(family.name);
  if (!labels.empty()) _text.append("{").append(labels).append("}");
  _text += ' ';
  addNumber(_text, value);
  _text += '\n';
}

}  // namespace ZebManager
