#include "cli/InterfaceNames.h"

#include <algorithm>
#include <array>

#include "tree/Links.h"
#include "tree/TreeParts.h"
#include "values/CallMemory.h"
#include "values/ObjectPathText.h"
#include "values/Values.h"

namespace ZebManager {
namespace {

constexpr char kEndpoint[] = "ZEB_EthernetLANEndpoint";

/// A class whose instances are called what their endpoints are called.
struct CarrierRow {
  const char* className;
  const char* toEndpoint;
};
constexpr std::array kCarriers = {CarrierRow{"ZEB_EthernetPort", "ZEB_EthernetPortToLANEndpoint"},
                                  CarrierRow{"ZEB_EthernetTeam", "ZEB_EthernetTeamToLANEndpoint"}};

/// Null for what has no path.
PathBody* pathOf(const CMPIData& item) {
  if (item.type == CMPI_instance) return as<Instance>(item.value.inst)->body().path;
  return item.type == CMPI_ref ? &as<ObjectPath>(item.value.ref)->body() : nullptr;
}

std::string nameAmong(const Reply& reply, bool vlans) {
  for (const CMPIData& item : reply.items()) {
    if (item.type != CMPI_instance) continue;
    const PropertyView view(*as<Instance>(item.value.inst));
    if (vlans || !isVlan(view)) return deviceName(view);
  }
  return {};
}

}  // namespace

std::string interfaceName(Namespace& model, const ObjectPath& path) {
  const std::string_view className = path.body().className;
  if (model.repository().isA(className, kEndpoint)) return nameAmong(model.getInstance(path, nullptr), true);
  for (const CarrierRow& row : kCarriers) {
    if (!model.repository().isA(className, row.className)) continue;
    AssociationFilter filter;
    filter.associationClass = row.toEndpoint;
    return nameAmong(model.associators(path, filter, nullptr), false);
  }
  return {};
}

InterfaceNames::InterfaceNames(Namespace& model) {
  readAll(model);
}

InterfaceNames::InterfaceNames(Namespace& model, std::span<const CMPIData> items) {
  constexpr std::size_t kFew = 3;
  if (items.size() > kFew) {
    readAll(model);
    return;
  }
  Arena arena;
  const ArenaScope scope(arena);
  for (const CMPIData& item : items) {
    if (PathBody* const path = pathOf(item))
      _byPath[formatPath(*path)] = interfaceName(model, *makeHandle<ObjectPath>(arena, path));
  }
}

void InterfaceNames::readAll(Namespace& model) {
  if (!model.repository().find(kEndpoint)) return;
  forEachInstance(model, kEndpoint, {"Description", "VLANId", "VLANName"}, [&](const PropertyView& view) {
    const std::string name = deviceName(view);
    if (name.empty()) return;
    _byPath[view.path()] = name;
    auto& paths = _byName[name];
    if (paths.empty()) _names.push_back(name);
    if (isVlan(view)) paths.push_back(view.path());
  });
  for (const CarrierRow& row : kCarriers) carry(model, row.toEndpoint);
}

/// A port or team is called what its endpoints are called, its VLANs aside.
void InterfaceNames::carry(Namespace& model, const char* association) {
  forEachInstance(model, association, {"Antecedent", "Dependent"}, [&](const PropertyView& view) {
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
  return repository.isA(className, kEndpoint) || std::ranges::any_of(kCarriers, [&](const CarrierRow& row) {
           return repository.isA(className, row.className);
         });
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
