#include "cli/NearLinks.h"

#include <algorithm>
#include <map>
#include <optional>

namespace ZebManager {

using Json = nlohmann::ordered_json;

namespace {

using Names = std::vector<std::string>;

std::optional<std::string> textAt(const Json& link, const char* pointer) {
  const Json::json_pointer place(pointer);
  return link.contains(place) ? std::optional(link.at(place).dump()) : std::nullopt;
}

/// The functions of a device are a card.
std::optional<std::string> cardAt(const Json& link, const char* pointer) {
  auto function = textAt(link, pointer);
  if (function) function->resize(std::min(function->size(), function->rfind('.')));
  return function;
}

Names present(std::initializer_list<std::optional<std::string>> all) {
  Names names;
  for (const auto& one : all) {
    if (one) names.push_back(*one);
  }
  return names;
}

/// What others refer to a link by.
Names calledBy(const Json& link) {
  return present({textAt(link, "/index"), cardAt(link, "/hardware/pci")});
}

Names refersTo(const Json& link) {
  return present({textAt(link, "/lowerIndex"), textAt(link, "/masterIndex"),
                  textAt(link, "/bond/activeIndex"), cardAt(link, "/hardware/pci"),
                  cardAt(link, "/hardware/physicalFunction")});
}

class Near {
 public:
  Near(const Json& links, std::size_t most) : _links(links), _most(most) {
    for (std::size_t place = 0; place < links.size(); ++place) {
      for (const std::string& name : calledBy(links[place])) _called[name].push_back(place);
      for (const std::string& name : refersTo(links[place])) _referring[name].push_back(place);
    }
  }

  std::vector<std::size_t> of(const std::set<std::string>& names) {
    for (std::size_t place = 0; place < _links.size(); ++place) {
      if (names.contains(_links[place].value("name", ""))) add(place);
    }
    for (std::size_t done = 0; done < _order.size(); ++done) {
      const Json& link = _links[_order[done]];
      for (const std::string& name : refersTo(link)) addAll(_called, name);
      for (const std::string& name : calledBy(link)) addAll(_referring, name);
    }
    for (std::size_t place = 0; place < _links.size(); ++place) add(place);
    std::ranges::sort(_order);
    return _order;
  }

 private:
  using Places = std::map<std::string, std::vector<std::size_t>>;

  void add(std::size_t place) {
    if (_order.size() < _most && _taken.insert(place).second) _order.push_back(place);
  }
  void addAll(const Places& places, const std::string& name) {
    const auto found = places.find(name);
    if (found == places.end()) return;
    for (const std::size_t place : found->second) add(place);
  }

  const Json& _links;
  const std::size_t _most;
  Places _called, _referring;
  std::vector<std::size_t> _order;
  std::set<std::size_t> _taken;
};

}  // namespace

bool isReference(std::string_view fact) {
  return fact == "links.name" || fact.ends_with("ndex") || fact.ends_with(".pci") ||
         fact.ends_with(".physicalFunction");
}

std::vector<std::size_t> nearLinks(const Json& links, const std::set<std::string>& names, std::size_t most) {
  return Near(links, most).of(names);
}

}  // namespace ZebManager
