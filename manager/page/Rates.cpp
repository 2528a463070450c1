#include "page/Rates.h"

#include <algorithm>

#include "tree/Links.h"

namespace ZebManager {
namespace {

constexpr std::size_t kKept = 90;
/// The history of more would keep a page from its first sight.
constexpr std::size_t kMostWithHistory = 512;

constexpr std::array kProperties = {
    "BytesReceived",           "BytesTransmitted",    "PacketsReceived",
    "PacketsTransmitted",      "AlignmentErrors",     "FCSErrors",
    "LateCollisions",          "ExcessiveCollisions", "InternalMACTransmitErrors",
    "InternalMACReceiveErrors"};

/// Everything from the first error on is an error.
Rates::Values valuesOf(const PropertyView& view) {
  Rates::Values values{};
  for (std::size_t i = 0; i < kProperties.size(); ++i) {
    values[std::min<std::size_t>(i, Rates::Errors)] += view.number(kProperties[i]).value_or(0);
  }
  return values;
}

bool isIdle(const Rates::Values& rates) {
  return std::ranges::all_of(rates, [](std::uint64_t rate) { return rate == 0; });
}

void append(std::string& json, const Rates::Values& rates) {
  for (const std::uint64_t rate : rates) json.append(",").append(std::to_string(rate));
}

}  // namespace

void Rates::follow(const std::vector<std::string>& ports) {
  const Links links = readLinks(_model, "ZEB_EthernetPortStatisticalData", "ManagedElement", "Stats");
  _places.clear();
  std::unordered_map<std::string, Port> kept;
  for (std::size_t place = 0; place < ports.size(); ++place) {
    const std::string& path = ports[place];
    for (const std::string& counters : ZebManager::follow(links, path)) _places[counters] = place;
    kept[path] = std::move(_ports[path]);
  }
  _paths = ports;
  _ports = std::move(kept);
}

void Rates::read() {
  std::array<const char*, kProperties.size() + 2> wanted{"InstanceID"};
  std::ranges::copy(kProperties, wanted.begin() + 1);
  const auto time = Clock::now();
  const Reply reply = _model.enumerateInstances("ZEB_EthernetStatistics", wanted.data());
  if (reply.code != CMPI_RC_OK) throw CimError(reply.code, reply.message);
  std::vector<Values> counters(_paths.size());
  for (const CMPIData& item : reply.items()) {
    const PropertyView view(*as<Instance>(item.value.inst));
    const auto found = _places.find(view.path());
    if (found != _places.end()) counters[found->second] = valuesOf(view);
  }
  take(counters, time);
}

void Rates::take(const std::vector<Values>& counters, Clock::time_point time) {
  const double seconds = std::chrono::duration<double>(time - _time).count();
  _time = time;
  for (std::size_t place = 0; place < counters.size() && place < _paths.size(); ++place) {
    Port& port = _ports[_paths[place]];
    Values rates{};
    for (std::size_t kind = 0; kind < Count && port.known; ++kind) {
      const std::uint64_t before = port.counters[kind];
      const std::uint64_t now = counters[place][kind];
      // A counter that begins anew says nothing.
      if (now > before && seconds > 0)
        rates[kind] = static_cast<std::uint64_t>(static_cast<double>(now - before) / seconds + 0.5);
    }
    if (port.known) port.rates.push_back(rates);
    if (port.rates.size() > kKept) port.rates.pop_front();
    port.counters = counters[place];
    port.known = true;
  }
}

std::string Rates::newest() const {
  std::string json = "[";
  for (std::size_t place = 0; place < _paths.size(); ++place) {
    const auto& rates = _ports.at(_paths[place]).rates;
    const bool idle =
        rates.empty() || (isIdle(rates.back()) && (rates.size() < 2 || isIdle(rates[rates.size() - 2])));
    if (idle) continue;
    json.append(json.size() > 1 ? ",[" : "[").append(std::to_string(place));
    append(json, rates.back());
    json += "]";
  }
  return json + "]";
}

std::string Rates::history() const {
  std::string json = "{";
  for (std::size_t place = 0; place < _paths.size() && _paths.size() <= kMostWithHistory; ++place) {
    const auto& rates = _ports.at(_paths[place]).rates;
    if (std::ranges::all_of(rates, isIdle)) continue;
    json.append(json.size() > 1 ? ",\"" : "\"").append(std::to_string(place)).append("\":[");
    for (const Values& moment : rates) {
      if (json.back() != '[') json += ",";
      json += "[";
      const std::size_t begin = json.size();
      append(json, moment);
      json.erase(begin, 1);
      json += "]";
    }
    json += "]";
  }
  return json + "}";
}

}  // namespace ZebManager
