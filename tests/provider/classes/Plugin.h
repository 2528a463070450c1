#pragma once

#include <map>
#include <string>
#include <vector>

#include "ProviderFixture.h"
#include "cmpicpp/CmpiData.h"
#include "cmpicpp/CmpiInstance.h"

namespace ZEB::test {

/// Filters of an association request; null restricts nothing.
struct AssociationFilter {
  const char* associationClass = nullptr;
  const char* resultClass = nullptr;
  const char* role = nullptr;
  const char* resultRole = nullptr;
};

/// The plug-in as an object manager has it, from its factory functions to its cleanup.
class Plugin {
 public:
  explicit Plugin(FakeBroker& broker);
  ~Plugin();
  Plugin(const Plugin&) = delete;
  Plugin& operator=(const Plugin&) = delete;

  std::vector<CmpiCpp::CmpiObjectPath> names(const std::string& className);
  std::vector<CmpiCpp::CmpiInstance> instances(const std::string& className);
  /// Instances of that path: one, or none when it is not found.
  std::vector<CmpiCpp::CmpiInstance> get(const CmpiCpp::CmpiObjectPath& path);
  std::vector<CmpiCpp::CmpiInstance> associators(const CmpiCpp::CmpiObjectPath& path,
                                                 const AssociationFilter& filter = {});
  std::vector<CmpiCpp::CmpiObjectPath> associatorNames(const CmpiCpp::CmpiObjectPath& path,
                                                       const AssociationFilter& filter = {});
  std::vector<CmpiCpp::CmpiInstance> references(const CmpiCpp::CmpiObjectPath& path,
                                                const AssociationFilter& filter = {});
  std::vector<CmpiCpp::CmpiObjectPath> referenceNames(const CmpiCpp::CmpiObjectPath& path,
                                                      const AssociationFilter& filter = {});

 private:
  FakeBroker& _broker;
  CMPIInstanceMI* _instances;
  CMPIAssociationMI* _associations;
};

/// A path in short: its class without "ZEB_" and "Ethernet", and what identifies it, such as "Port:3",
/// "RemoteServiceAccessPoint:eth0" or "ControllerLocation:0503"; the computer system is "System".
std::string shortName(const CmpiCpp::CmpiObjectPath& path);

/// An association's ends in the order of its properties: "Port:1 > LANEndpoint:1".
std::string shortEnds(const CmpiCpp::CmpiInstance& association);

/// What a plug-in serves: by class, in the order of enumeration.
using Inventory = std::map<std::string, std::vector<std::string>>;

/// The inventory that a text describes: a line for each class, "Class: a, b, c".
Inventory inventoryOf(const std::string& text);

/// The classes of the schema of which the plug-in may have managed instances.
const std::vector<std::string>& objectClasses();
const std::vector<std::string>& associationClasses();

/// What the plug-in serves of the classes above, without those of which it has nothing.
Inventory objectsOf(Plugin& plugin);
Inventory associationsOf(Plugin& plugin);

}  // namespace ZEB::test
