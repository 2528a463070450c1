#include "recorded/SnapshotReader.h"

#include <algorithm>
#include <limits>
#include <nlohmann/json.hpp>

#include "recorded/Describe.h"
#include "recorded/Format.h"
#include "recorded/Names.h"
#include "recorded/Timeline.h"

namespace ZEB::ethernet {
namespace {

using Json = nlohmann::json;

/// Reads one JSON object. After the first value of a wrong kind nothing more is taken, and `problem` says
/// what was expected where.
class Reader {
 public:
  Reader(const Json& object, std::string place, std::string& problem)
      : _object(object), _place(std::move(place)), _problem(problem) {}

  template <class T>
  void operator()(const char* key, T& value) {
    if (const Json* found = find(key)) read(*found, placeOf(key), value);
  }
  void flags(const char* key, std::optional<std::uint32_t>& value);
  void operState(const char* key, std::optional<std::uint8_t>& value);

 private:
  const Json* find(const char* key) const {
    const auto found = _object.find(key);
    return !_problem.empty() || found == _object.end() || found->is_null() ? nullptr : &*found;
  }
  std::string placeOf(const char* key) const { return _place.empty() ? key : _place + "." + key; }
  void expected(const std::string& place, const std::string& what) {
    if (_problem.empty()) _problem = place + ": expected " + what;
  }

  /// A text that `parse` makes a value of.
  template <class T, class Parse>
  void readText(const Json& json, const std::string& place, T& value, const char* what, Parse parse) {
    const auto parsed = json.is_string() ? parse(json.get_ref<const std::string&>()) : std::nullopt;
    if (!parsed) return expected(place, what);
    value = static_cast<T>(*parsed);
  }

  template <class T>
  void read(const Json& json, const std::string& place, std::optional<T>& value) {
    T inner{};
    read(json, place, inner);
    value = std::move(inner);
  }
  template <class T>
  void read(const Json& json, const std::string& place, std::shared_ptr<const T>& value) {
    auto inner = std::make_shared<T>();
    read(json, place, *inner);
    value = std::move(inner);
  }
  template <class T>
  requires std::is_integral_v<T>
  void read(const Json& json, const std::string& place, T& value);
  void read(const Json& json, const std::string& place, bool& value) {
    if (!json.is_boolean()) return expected(place, "true or false");
    value = json.get<bool>();
  }
  void read(const Json& json, const std::string& place, std::string& value) {
    if (!json.is_string()) return expected(place, "a text");
    value = json.get<std::string>();
  }
  void read(const Json& json, const std::string& place, HardwareAddress& value) {
    readText(json, place, value, "an address such as \"00:1a:2b:3c:4d:5e\"", parseHardwareAddress);
  }
  void read(const Json& json, const std::string& place, IpAddress& value) {
    readText(json, place, value, "an IP address", parseIpAddress);
  }
  void read(const Json& json, const std::string& place, IpFamily& value) {
    readText(json, place, value, "\"ipv4\" or \"ipv6\"", ipFamilyOf);
  }
  void read(const Json& json, const std::string& place, PciAddress& value) {
    readText(json, place, value, "a PCI address such as \"0000:03:00.0\"", parsePciAddress);
  }
  void read(const Json& json, const std::string& place, SlotKind& value);
  void read(const Json& json, const std::string& place, LinkModes& value);
  template <class T>
  void read(const Json& json, const std::string& place, std::vector<T>& values) {
    if (!json.is_array()) return expected(place, "a list");
    values.resize(json.size());
    for (std::size_t i = 0; i < values.size() && _problem.empty(); ++i) {
      read(json[i], place + "[" + std::to_string(i) + "]", values[i]);
    }
  }
  template <class T>
  requires requires(T& part, Reader& reader) { describe(part, reader); }
  void read(const Json& json, const std::string& place, T& part) {
    if (!json.is_object()) return expected(place, "an object");
    Reader reader(json, place, _problem);
    describe(part, reader);
  }

  const Json& _object;
  std::string _place;
  std::string& _problem;
};

template <class T>
requires std::is_integral_v<T>
void Reader::read(const Json& json, const std::string& place, T& value) {
  const auto fits = [&] {
    if (json.is_number_unsigned()) return std::in_range<T>(json.get<std::uint64_t>());
    return json.is_number_integer() && std::in_range<T>(json.get<std::int64_t>());
  };
  if (!fits()) {
    return expected(place, "a whole number from " + std::to_string(std::numeric_limits<T>::min()) + " to " +
                               std::to_string(std::numeric_limits<T>::max()));
  }
  value = json.get<T>();
}

void Reader::read(const Json& json, const std::string& place, SlotKind& value) {
  int number = 0;
  read(json, place, number);
  if (number < static_cast<int>(SlotKind::Pci) || number > static_cast<int>(SlotKind::PciExpress)) {
    return expected(place, "3 (PCI), 4 (PCI-X) or 5 (PCI Express)");
  }
  value = static_cast<SlotKind>(number);
}

void Reader::read(const Json& json, const std::string& place, LinkModes& value) {
  if (!json.is_array()) return expected(place, "a list of link modes");
  for (const Json& name : json) {
    const auto bit = name.is_string() ? linkModeBit(name.get_ref<const std::string&>()) : std::nullopt;
    if (!bit) return expected(place, "link modes such as \"1000baseT/Full\"");
    value.set(*bit);
  }
}

void Reader::flags(const char* key, std::optional<std::uint32_t>& value) {
  const Json* names = find(key);
  if (!names) return;
  if (!names->is_array()) return expected(placeOf(key), "a list of flags");
  value = 0;
  for (const Json& name : *names) {
    const auto flag = name.is_string() ? flagOf(name.get_ref<const std::string&>()) : std::nullopt;
    if (!flag) return expected(placeOf(key), "flags such as \"UP\" and \"LOWER_UP\"");
    *value |= *flag;
  }
}

void Reader::operState(const char* key, std::optional<std::uint8_t>& value) {
  if (const Json* found = find(key)) {
    readText(*found, placeOf(key), value, "a state such as \"UP\" or \"DOWN\"", operStateOf);
  }
}

Failure bad(std::string what) {
  return Failure{0, std::move(what)};
}

/// What no key can leave out: a link is known by its number and name.
std::string missingPart(const HostSnapshot& snapshot, const std::string& place) {
  for (std::size_t i = 0; i < snapshot.links.size(); ++i) {
    const LinkFacts& link = snapshot.links[i];
    if (link.index == 0 || link.name.empty()) {
      return place + "links[" + std::to_string(i) + "]: expected an index from 1 and a name";
    }
  }
  for (std::size_t i = 0; i < snapshot.addresses.size(); ++i) {
    if (snapshot.addresses[i].prefixLength > snapshot.addresses[i].address.width()) {
      return place + "addresses[" + std::to_string(i) +
             "].prefixLength: expected no more than the address has bits";
    }
  }
  return "";
}

Outcome<HostSnapshot> readMoment(const Json& json, const std::string& place) {
  if (!json.is_object()) return bad(place + "expected an object");
  HostSnapshot snapshot;
  std::string problem;
  Reader reader(json, "", problem);
  describe(snapshot, reader);
  if (!problem.empty()) return bad(place + problem);
  if (problem = missingPart(snapshot, place); !problem.empty()) return bad(problem);
  return snapshot;
}

/// Deep nesting has no meaning here, and every level costs a reader that walks it. Counted before parsing: a
/// parser that is asked at every object walks all of a list for each of its elements.
bool nestsTooDeep(const std::string& text) {
  constexpr int kDeepest = 16;
  int depth = 0;
  bool inString = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (inString) {
      if (c == '\\') ++i;
      if (c == '"') inString = false;
    } else if (c == '"') {
      inString = true;
    } else if (c == '{' || c == '[') {
      if (++depth > kDeepest) return true;
    } else if (c == '}' || c == ']') {
      --depth;
    }
  }
  return false;
}

std::string formatProblem(const Json& root) {
  const auto format = root.find("format");
  if (format == root.end() || (*format != kSnapshotFormat && *format != kTimelineFormat)) {
    return std::string("format: expected \"") + kSnapshotFormat + "\" or \"" + kTimelineFormat + "\"";
  }
  const auto version = root.find("version");
  if (version == root.end() || !version->is_number_unsigned() || version->get<std::uint64_t>() == 0) {
    return "version: expected a whole number from 1";
  }
  if (version->get<std::uint64_t>() > kFormatVersion) {
    return "version: " + version->dump() + " is newer than " + std::to_string(kFormatVersion) +
           ", the newest that is understood";
  }
  return "";
}

}  // namespace

Outcome<std::vector<TimedSnapshot>> readSnapshots(const std::string& text) {
  if (text.size() > kLargestSnapshotFile) return bad("larger than any snapshot of a host");
  if (nestsTooDeep(text)) return bad("nested deeper than any snapshot");
  const Json root = Json::parse(text, nullptr, false);
  if (!root.is_object()) return bad("expected one JSON object");
  if (const std::string problem = formatProblem(root); !problem.empty()) return bad(problem);

  std::vector<TimelineStep> steps;
  if (root["format"] == kTimelineFormat) {
    auto timeline = unfoldTimeline(root);
    if (!timeline) return timeline.failure();
    steps = std::move(*timeline);
  } else {
    steps.push_back({0, root, ""});
  }
  std::vector<TimedSnapshot> moments;
  for (const TimelineStep& step : steps) {
    auto snapshot = readMoment(step.snapshot, step.place);
    if (!snapshot) return snapshot.failure();
    moments.push_back({step.at, std::move(*snapshot)});
  }
  return moments;
}

}  // namespace ZEB::ethernet
