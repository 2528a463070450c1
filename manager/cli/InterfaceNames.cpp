#include "cli/InterfaceNames.h"

#include <algorithm>

#include "tree/Links.h"
#include "tree/TreeParts.h"

namespace ZebManager {
namespace {

constexpr char kEndpoint[] = "ZEB_EthernetLANEndpoint";

}  // namespace

InterfaceNames::InterfaceNames(Namespace& model) {
  if (!model.repository().find(kEndpoint)) return;
  forEachInstance(model, kEndpoint, [&](const PropertyView& view) {
    const std::string name = deviceName(view);
    if (name.empty()) return;
    _byPath[view.path()] = name;
    auto& paths = _byName[name];
    if (paths.empty()) _names.push_back(name);
    if (isVlan(view)) paths.push_back(view.path());
  });
  carry(model, "ZEB_EthernetPortToLANEndpoint");
  carry(model, "ZEB_EthernetTeamToLANEndpoint");
}

/// A port or team is called what its endpoints are called, its VLANs aside.
void InterfaceNames::carry(Namespace& model, const char* association) {
  forEachInstance(model, association, [&](const PropertyView& view) {
    const auto found = _byPath.find(view.reference("Dependent"));
    if (found == _byPath.end()) return;
    auto& paths = _byName[found->second];
    if (std::ranges::find(paths, found->first) != paths.end()) return;  // a VLAN
    const std::string carrier = view.reference("Antecedent");
    _byPath[carrier] = found->second;
    if (std::ranges::find(paths, carrier) == paths.end()) paths.push_back(carrier);
  });
}

bool InterfaceNames::has(const ClassRepository& repository, std::string_view className) {
  for (const char* known : {kEndpoint, "ZEB_EthernetPort", "ZEB_EthernetTeam"}) {
    if (repository.isA(className, known)) return true;
  }
  return false;
}

const std::string& InterfaceNames::nameOf(const std::string& path) const {
  static const std::string kNone;
  const auto found = _byPath.find(path);
  return found == _byPath.end() ? kNone : found->second;
}

std::vector<std::string> InterfaceNames::pathsOf(const std::string& name) const {
  const auto found = _byName.find(name);
  return found == _byName.end() ? std::vector<std::string>() : found->second;
}

}  // namespace ZebManager
