// Metrics as Prometheus reads them.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "metrics/Families.h"

namespace ZebManager {

enum class MetricFormat { Text, OpenMetrics };

/// The format that a client prefers, by its header Accept; the text format where it has no preference.
MetricFormat metricFormatFor(std::string_view accept);
/// With its version, as a header says it.
const char* contentTypeOf(MetricFormat format);

/// The labels of a thing that all its series have, as they are written.
using Labels = std::string;

/// Families in a text, one after another.
class Exposition {
 public:
  /// `size`: bytes that are expected.
  explicit Exposition(MetricFormat format, std::size_t size = 0) : _format(format) { _text.reserve(size); }

  /// What a table says of all things of a kind. A family without a series is left out.
  template <class Thing>
  void add(const MetricTable<Thing>& table, std::span<const Thing> things) {
    const std::vector<Labels> identities = identitiesOf(table, things);
    if (table.info && !things.empty()) {
      begin(*table.info);
      for (std::size_t i = 0; i < things.size(); ++i) {
        const std::string more = labelsOf(table.infoLabels, things[i]);
        sample(*table.info, identities[i] + (identities[i].empty() || more.empty() ? "" : ",") + more, 1);
      }
    }
    addNumbers(table.numbers, things, std::span<const Labels>(identities));
  }

  /// Numbers alone, of things whose identities are known.
  template <class Thing>
  void addNumbers(std::span<const NumberRow<Thing>> rows, std::span<const Thing> things,
                  std::span<const Labels> identities) {
    for (const NumberRow<Thing>& row : rows) {
      bool begun = false;
      for (std::size_t i = 0; i < things.size(); ++i) {
        const MetricValue value = row.value(things[i]);
        if (!value) continue;
        if (!begun) begin(row.family);
        begun = true;
        sample(row.family, identities[i], *value);
      }
    }
  }

  /// What was made before.
  void add(std::string_view families) { _text.append(families); }

  const std::string& text() const { return _text; }
  std::string take() { return std::move(_text); }

  template <class Thing>
  static std::vector<Labels> identitiesOf(const MetricTable<Thing>& table, std::span<const Thing> things) {
    std::vector<Labels> identities;
    for (const Thing& thing : things) identities.push_back(labelsOf(table.identity, thing));
    return identities;
  }

 private:
  template <class Thing>
  static std::string labelsOf(std::span<const LabelRow<Thing>> rows, const Thing& thing) {
    std::string labels;
    for (const LabelRow<Thing>& row : rows) addLabel(labels, row.label, row.text(thing));
    return labels;
  }

  static void addLabel(std::string& labels, const char* name, const std::string& value);
  void begin(const MetricFamily& family);
  void sample(const MetricFamily& family, const std::string& labels, double value);

  const MetricFormat _format;
  std::string _text;
};

/// What stands behind the last family.
const char* endOf(MetricFormat format);

}  // namespace ZebManager
