#include "ServedModel.h"

#include <algorithm>

#include "GuestError.h"
#include "support/PropertyJson.h"

namespace ZEB::guest {
namespace {

using nlohmann::json;

ServedInstance instanceOf(const json& object) {
  return {object.at("class"), object.at("path"), object.at("properties")};
}

const ServedInstance& single(const std::vector<const ServedInstance*>& found, const std::string& what) {
  if (found.size() != 1) throw GuestError(std::to_string(found.size()) + " instances of " + what);
  return *found.front();
}

}  // namespace

bool ServedInstance::has(const std::string& property) const {
  return std::ranges::any_of(properties, [&](const json& row) { return row.at("name") == property; });
}

json ServedInstance::operator[](const std::string& property) const {
  return test::propertyOf(properties, property);
}

void ServedModel::load(const std::string& className, Classes& into) {
  if (!loaded_.insert(className).second) return;
  for (const json& object : json::parse(guest_.must(ZEBCIM " instances " + className + " --json=typed"))) {
    into[object.at("class")].push_back(instanceOf(object));
  }
}

const std::vector<ServedInstance>& ServedModel::all(const std::string& className) {
  load("CIM_ManagedElement", elements_);
  return elements_[className];
}

const std::vector<ServedInstance>& ServedModel::links(const std::string& association) {
  load("CIM_Dependency", associations_);
  // Not every association is a dependency.
  if (!associations_.contains(association)) load(association, associations_);
  return associations_[association];
}

const ServedInstance& ServedModel::only(const std::string& className, const std::string& property,
                                        const json& value) {
  std::vector<const ServedInstance*> found;
  for (const ServedInstance& instance : all(className)) {
    if (instance[property] == value) found.push_back(&instance);
  }
  return single(found, className + " with " + property + " " + value.dump());
}

const ServedInstance& ServedModel::at(const std::string& className, const std::string& path) {
  std::vector<const ServedInstance*> found;
  for (const ServedInstance& instance : all(className)) {
    if (instance.path == path) found.push_back(&instance);
  }
  return single(found, className + " at " + path);
}

std::vector<ServedInstance> ServedModel::across(const std::string& association, const std::string& fromRole,
                                                const std::string& path, const std::string& toRole,
                                                const std::string& className) {
  std::vector<ServedInstance> ends;
  for (const ServedInstance& link : links(association)) {
    if (link[fromRole] == path) ends.push_back(at(className, link[toRole]));
  }
  return ends;
}

const ServedInstance& ServedModel::port(const std::string& card) {
  return only("ZEB_EthernetPort", "PermanentAddress", withoutColons(guest_.addressOf(card)));
}

ServedInstance ServedModel::controller(const ServedInstance& port) {
  const auto found = across("ZEB_EthernetPortControllerEthernetPort", "Dependent", port.path, "Antecedent",
                            "ZEB_EthernetPortController");
  if (found.size() != 1) throw GuestError(std::to_string(found.size()) + " controllers of " + port.path);
  return found.front();
}

const ServedInstance& ServedModel::endpoint(const std::string& interface) {
  return only("ZEB_EthernetLANEndpoint", "Description", interface);
}

}  // namespace ZEB::guest
