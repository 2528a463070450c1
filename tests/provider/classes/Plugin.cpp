#include "Plugin.h"

#include <gtest/gtest.h>

#include <sstream>

#include "provider/EntryPoints.h"
#include "schema/ClassRepository.h"

namespace ZEB::test {

using CmpiCpp::CmpiInstance;
using CmpiCpp::CmpiObjectPath;

namespace {

/// What the schema declares of the plug-in's own, but for the system, which is the object manager's, and the
/// worker.
std::vector<std::string> servedClasses(bool associations) {
  static const auto schema = ZebManager::ClassRepository::fromFile(ZEB_SCHEMA_FILE);
  std::vector<std::string> names;
  for (const auto& def : schema.classes()) {
    const bool elsewhere = def->name == "ZEB_ComputerSystem" || schema.isA(def->name, "ZEB_AutoStart");
    const bool served = def->name.starts_with("ZEB_") && !def->abstract && !def->indication && !elsewhere;
    if (served && def->association == associations) names.push_back(def->name);
  }
  return names;
}

}  // namespace

const std::vector<std::string>& objectClasses() {
  static const auto names = servedClasses(false);
  return names;
}

const std::vector<std::string>& associationClasses() {
  static const auto names = servedClasses(true);
  return names;
}

Plugin::Plugin(FakeBroker& broker) : _broker(broker) {
  FakeBroker::Call call(broker);
  _instances = _Generic_Create_InstanceMI(broker.get(), &call.context(), "ZEBEthernetPort", nullptr);
  _associations = _Generic_Create_AssociationMI(broker.get(), &call.context(), "ZEBEthernetPort", nullptr);
}

Plugin::~Plugin() {
  FakeBroker::Call call(_broker);
  _instances->ft->cleanup(_instances, &call.context(), 1);
  _associations->ft->cleanup(_associations, &call.context(), 1);
}

std::vector<CmpiObjectPath> Plugin::names(const std::string& className) {
  FakeBroker::Call call(_broker);
  const auto path = call.path({"root/jxv", CmpiCpp::CmpiName(className)});
  _instances->ft->enumerateInstanceNames(_instances, &call.context(), &call.result(), path);
  return call.result().paths;
}

std::vector<CmpiInstance> Plugin::instances(const std::string& className) {
  FakeBroker::Call call(_broker);
  const auto path = call.path({"root/jxv", CmpiCpp::CmpiName(className)});
  _instances->ft->enumerateInstances(_instances, &call.context(), &call.result(), path, nullptr);
  return call.result().instances;
}

std::vector<CmpiInstance> Plugin::get(const CmpiObjectPath& path) {
  FakeBroker::Call call(_broker);
  _instances->ft->getInstance(_instances, &call.context(), &call.result(), call.path(path), nullptr);
  return call.result().instances;
}

std::vector<CmpiInstance> Plugin::associators(const CmpiObjectPath& path, const AssociationFilter& filter) {
  FakeBroker::Call call(_broker);
  const auto status = _associations->ft->associators(
      _associations, &call.context(), &call.result(), call.path(path), filter.associationClass,
      filter.resultClass, filter.role, filter.resultRole, nullptr);
  EXPECT_EQ(status.rc, CMPI_RC_OK);
  return call.result().instances;
}

std::vector<CmpiObjectPath> Plugin::associatorNames(const CmpiObjectPath& path,
                                                    const AssociationFilter& filter) {
  FakeBroker::Call call(_broker);
  const auto status = _associations->ft->associatorNames(_associations, &call.context(), &call.result(),
                                                         call.path(path), filter.associationClass,
                                                         filter.resultClass, filter.role, filter.resultRole);
  EXPECT_EQ(status.rc, CMPI_RC_OK);
  return call.result().paths;
}

std::vector<CmpiInstance> Plugin::references(const CmpiObjectPath& path, const AssociationFilter& filter) {
  FakeBroker::Call call(_broker);
  const auto status =
      _associations->ft->references(_associations, &call.context(), &call.result(), call.path(path),
                                    filter.associationClass, filter.role, nullptr);
  EXPECT_EQ(status.rc, CMPI_RC_OK);
  return call.result().instances;
}

std::vector<CmpiObjectPath> Plugin::referenceNames(const CmpiObjectPath& path,
                                                   const AssociationFilter& filter) {
  FakeBroker::Call call(_broker);
  const auto status = _associations->ft->referenceNames(
      _associations, &call.context(), &call.result(), call.path(path), filter.associationClass, filter.role);
  EXPECT_EQ(status.rc, CMPI_RC_OK);
  return call.result().paths;
}

std::string shortName(const CmpiObjectPath& path) {
  std::string name = path.className().str();
  if (name == "ZEB_ComputerSystem") return "System";
  for (const char* part : {"ZEB_", "Ethernet"}) {
    if (name.starts_with(part)) name.erase(0, std::string(part).size());
  }
  for (const char* key : {"DeviceID", "InstanceID", "InstanceId", "Tag", "PhysicalPosition", "Name"}) {
    if (const auto* value = path.findKey(key)) {
      const std::string text = value->asString();
      return name + ":" + text.substr(text.find_last_of(": -") + 1);
    }
  }
  return name;
}

std::string shortEnds(const CmpiInstance& association) {
  const auto& properties = association.properties();
  return shortName(properties.at(0).value.asReference()) + " > " +
         shortName(properties.at(1).value.asReference());
}

Inventory inventoryOf(const std::string& text) {
  Inventory inventory;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    const auto colon = line.find(": ");
    if (colon == std::string::npos) continue;
    auto& entries = inventory[line.substr(0, colon)];
    std::istringstream all(line.substr(colon + 2));
    for (std::string entry; std::getline(all >> std::ws, entry, ',');) entries.push_back(entry);
  }
  return inventory;
}

Inventory objectsOf(Plugin& plugin) {
  Inventory inventory;
  for (const std::string& className : objectClasses()) {
    for (const auto& path : plugin.names(className)) inventory[className].push_back(shortName(path));
  }
  return inventory;
}

Inventory associationsOf(Plugin& plugin) {
  Inventory inventory;
  for (const std::string& className : associationClasses()) {
    for (const auto& instance : plugin.instances(className)) {
      inventory[className].push_back(shortEnds(instance));
    }
  }
  return inventory;
}

}  // namespace ZEB::test
