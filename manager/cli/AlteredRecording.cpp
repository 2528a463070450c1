#include "cli/AlteredRecording.h"

#include <algorithm>
#include <fstream>

#include "cli/NearLinks.h"
#include "values/ManagerError.h"

namespace ZebManager {
namespace {

using Json = AlteredRecording::Json;

/// "links.ethtool.speed": where it stands in the recording, and where in an element of that.
struct Place {
  explicit Place(const std::string& key) {
    const std::size_t dot = key.find('.');
    list = key.substr(0, dot);
    if (dot == std::string::npos) return;
    std::string pointer = "/" + key.substr(dot + 1);
    std::ranges::replace(pointer, '.', '/');
    within = Json::json_pointer(pointer);
  }
  std::string list;
  Json::json_pointer within;  ///< empty for what stands in the recording itself
};

/// The elements that a fact is said of; the recording itself for what stands in it.
std::vector<Json*> elementsOf(Json& recording, const Place& place) {
  if (place.within.empty()) return {&recording};
  std::vector<Json*> elements;
  if (!recording.contains(place.list)) return elements;
  for (Json& element : recording[place.list]) elements.push_back(&element);
  return elements;
}

Json::json_pointer pointerOf(const Place& place) {
  return place.within.empty() ? Json::json_pointer("/" + place.list) : place.within;
}

Json otherThan(const Json& value, const RecordedFact& fact) {
  if (value.is_number_integer() && fact.values[0] == 1) return value.get<std::int64_t>() + 1;
  if (!value.is_string()) return value == fact.values[0] ? fact.values[1] : fact.values[0];
  const bool isWord = fact.values[0] == "one";
  if (!isWord) return value == fact.values[0] ? fact.values[1] : fact.values[0];
  // As long as it was: the names of interfaces are bounded. Characters of several bytes stay whole.
  std::string text = value.get<std::string>();
  const auto isFirst = [](char byte) { return (static_cast<unsigned char>(byte) & 0xc0) != 0x80; };
  const auto second = std::find_if(text.begin() + (text.empty() ? 0 : 1), text.end(), isFirst);
  std::rotate(text.begin(), second, text.end());
  return text == value.get<std::string>() ? text + "0" : text;
}

bool change(Json& element, const Json::json_pointer& pointer, const RecordedFact& fact,
            AlteredRecording::Change how) {
  const bool known = element.contains(pointer);
  if (known != (how != AlteredRecording::Change::There)) return false;
  if (how == AlteredRecording::Change::Gone) {
    element[pointer.parent_pointer()].erase(pointer.back());
  } else {
    element[pointer] = known ? otherThan(element[pointer], fact) : fact.values[0];
  }
  return true;
}

constexpr const char* kOfLinks[] = {"addresses", "routes"};

std::set<Json> indexesOf(const Json& links) {
  std::set<Json> indexes;
  for (const Json& link : links) indexes.insert(link["index"]);
  return indexes;
}

/// Of links, addresses and routes.
auto isNotOf(const std::set<Json>& indexes) {
  return [&indexes](const Json& one) { return !indexes.contains(one.value("index", Json())); };
}

Json firstMoment(const std::string& text) {
  Json recording = Json::parse(text, nullptr, false);
  if (recording.is_object() && recording.contains("steps") && !recording["steps"].empty()) {
    Json moment = recording["steps"][0]["snapshot"];
    moment["format"] = "zeb-host-snapshot";
    moment["version"] = 1;
    return moment;
  }
  if (!recording.is_object()) throw ManagerError("the recording is no JSON");
  return recording;
}

}  // namespace

AlteredRecording::AlteredRecording(const std::string& text, std::filesystem::path file)
    : _whole(firstMoment(text)), _recording(_whole), _file(std::move(file)) {
  restore();
}

bool AlteredRecording::cut(const std::set<std::string>& names, std::size_t most) {
  _recording = _whole;
  const Json links = _whole.value("links", Json::array());
  const bool leavesOut = most > 0 && most * 2 < links.size();
  if (leavesOut) {
    Json& kept = _recording["links"] = Json::array();
    for (const std::size_t place : nearLinks(links, names, most)) kept.push_back(links[place]);
    const auto indexes = indexesOf(kept);
    for (const char* const list : kOfLinks) {
      if (_recording.contains(list))
        std::erase_if(_recording[list].get_ref<Json::array_t&>(), isNotOf(indexes));
    }
  }
  restore();
  return leavesOut;
}

void AlteredRecording::alterLeftOut(const std::set<const RecordedFact*>& facts, Change how) {
  const auto kept = indexesOf(_recording["links"]);
  Json altered = _whole;
  for (const RecordedFact* const fact : facts) {
    const Place place(fact->key);
    for (Json* const element : elementsOf(altered, place)) {
      if (isNotOf(kept)(*element) && element->contains("index"))
        change(*element, pointerOf(place), *fact, how);
    }
  }
  write(altered);
}

void AlteredRecording::write(const Json& recording) const {
  std::ofstream(_file) << recording;
}

bool AlteredRecording::alter(const RecordedFact& fact, Change how, Range range) {
  Json altered = _recording;
  const Place place(fact.key);
  const auto elements = elementsOf(altered, place);
  bool changed = false;
  for (std::size_t i = range.begin; i < std::min(range.end, elements.size()); ++i) {
    changed = change(*elements[i], pointerOf(place), fact, how) || changed;
  }
  if (changed) write(altered);
  return changed;
}

void AlteredRecording::switchLinks() {
  Json altered = _recording;
  for (Json& link : altered["links"]) {
    const bool carrier = link.value("carrier", false);
    link["carrier"] = !carrier;
    link["operState"] = carrier ? "DOWN" : "UP";
    if (!carrier) link["flags"] = {"UP", "BROADCAST", "RUNNING", "MULTICAST", "LOWER_UP"};
  }
  write(altered);
}

void AlteredRecording::twin() {
  constexpr std::int64_t kFar = 100'000;
  Json altered = _recording;
  const auto move = [](Json& object, const char* key) {
    if (object.contains(key)) object[key] = object[key].get<std::int64_t>() + kFar;
  };
  for (Json link : _recording.value("links", Json::array())) {
    for (const char* const key : {"index", "masterIndex", "lowerIndex"}) move(link, key);
    if (link.contains("bond")) move(link["bond"], "activeIndex");
    link["name"] = "z" + std::to_string(link["index"].get<std::int64_t>());
    for (const char* const key : {"/parentDevice", "/hardware/device", "/hardware/pci"}) {
      const Json::json_pointer pointer(key);
      if (link.contains(pointer)) link[pointer] = "0001" + link[pointer].get<std::string>().substr(4);
    }
    altered["links"].push_back(link);
  }
  for (const char* const list : kOfLinks) {
    for (Json one : _recording.value(list, Json::array())) {
      move(one, "index");
      altered[list].push_back(one);
    }
  }
  write(altered);
}

std::size_t AlteredRecording::countOf(const RecordedFact& fact) const {
  Json recording = _recording;
  return elementsOf(recording, Place(fact.key)).size();
}

std::string AlteredRecording::interfaceOf(const RecordedFact& fact, std::size_t element) const {
  const Place place(fact.key);
  if (place.within.empty()) return {};
  const Json& about = _recording.at(place.list).at(element);
  if (place.list == "links") return about.value("name", "");
  for (const Json& link : _recording.value("links", Json::array())) {
    if (about.contains("index") && link["index"] == about["index"]) return link.value("name", "");
  }
  return {};
}

Json AlteredRecording::valueOf(const RecordedFact& fact, std::size_t element) const {
  const Place place(fact.key);
  const Json& about = place.within.empty() ? _recording : _recording.at(place.list).at(element);
  const auto pointer = pointerOf(place);
  return about.contains(pointer) ? about.at(pointer) : Json(nullptr);
}

}  // namespace ZebManager
