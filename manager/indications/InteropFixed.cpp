// What the namespace says of the server itself, by which clients find out what they can ask.
#include <algorithm>

#include "indications/InteropTable.h"
#include "values/Values.h"

#ifndef ZEB_VERSION
#define ZEB_VERSION "unknown"
#endif

namespace ZebManager {
namespace {

constexpr char kManager[] = "zebcim";
constexpr std::uint64_t kEnabled = 2;
constexpr std::uint64_t kOk = 2;

void setNumber(StoredInstance& stored, const char* property, std::uint64_t number) {
  CMPIValue value{};
  value.uint64 = number;
  stored.set(property, dataOf(stored.classDef().property(property)->type, value));
}

void setNumbers(StoredInstance& stored, const char* property, std::initializer_list<std::uint16_t> numbers) {
  Array& array = *makeArray(stored.arena, static_cast<CMPICount>(numbers.size()), CMPI_uint16);
  CMPIData* next = array.body().elements;
  for (const std::uint16_t number : numbers) {
    CMPIValue value{};
    value.uint16 = number;
    *next++ = dataOf(CMPI_uint16, value);
  }
  stored.set(property, dataOf(&array));
}

void setEnd(StoredInstance& association, const char* role, const StoredInstance& end) {
  association.set(role, dataOf(makeHandle<ObjectPath>(
                            association.arena, copyPath(association.arena, *end.instance->body().path))));
}

void fillManager(StoredInstance& manager) {
  manager.setText("Name", kManager);
  manager.setText("ElementName", kManager);
  manager.setText("Description", "Serves what this machine knows of its Ethernet hardware");
  manager.setText("Version", ZEB_VERSION);
  setNumber(manager, "Started", 1);
  setNumber(manager, "EnabledState", kEnabled);
  setNumbers(manager, "OperationalStatus", {kOk});
  setNumber(manager, "GatherStatisticalData", 0);
}

/// Read, change, make and delete instances, associations, queries, declarations of qualifiers, indications;
/// not the changing of classes.
void fillMechanism(StoredInstance& mechanism) {
  mechanism.setText("Name", "cim-xml");
  mechanism.setText("ElementName", "CIM-XML");
  setNumber(mechanism, "CommunicationMechanism", 2);
  setNumbers(mechanism, "FunctionalProfilesSupported", {2, 3, 5, 6, 7, 9});
  setNumber(mechanism, "MultipleOperationsSupported", 0);
  setNumbers(mechanism, "AuthenticationMechanismsSupported", {2, 3});
  mechanism.setText("Version", "1.4");
  setNumber(mechanism, "CIMXMLProtocolVersion", 1);
  setNumber(mechanism, "CIMValidated", 0);
  setNumber(mechanism, "EnabledState", kEnabled);
}

void fillService(StoredInstance& service, const InteropSettings& settings) {
  service.setText("Name", "indications");
  service.setText("ElementName", "Indications");
  setNumber(service, "FilterCreationEnabled", 1);
  setNumber(service, "EnabledState", kEnabled);
  setNumber(service, "Started", 1);
  const auto pause = std::max<std::uint64_t>(settings.retryInterval, 1);
  setNumber(service, "DeliveryRetryInterval", pause);
  setNumber(service, "DeliveryRetryAttempts", std::min<std::uint64_t>(settings.retryTime / pause, 0xffff));
  setNumber(service, "SubscriptionRemovalAction", 4);
}

void fillCapabilities(StoredInstance& capabilities, const InteropSettings& settings) {
  capabilities.setText("InstanceID", "zebcim:indications");
  capabilities.setText("ElementName", "Indications");
  for (const char* const settable : {"FilterCreationEnabledIsSettable", "DeliveryRetryAttemptsIsSettable",
                                     "DeliveryRetryIntervalIsSettable", "SubscriptionRemovalActionIsSettable",
                                     "SubscriptionRemovalTimeIntervalIsSettable"}) {
    setNumber(capabilities, settable, 0);
  }
  const auto most = std::min<std::uint64_t>(settings.mostInstances, 0xffff);
  setNumber(capabilities, "MaxListenerDestinations", most);
  setNumber(capabilities, "MaxActiveSubscriptions", most);
}

void fillProfile(StoredInstance& profile) {
  profile.setText("InstanceID", "zebcim:Profile Registration:1.0.0");
  profile.setText("ElementName", "Profile Registration");
  setNumber(profile, "RegisteredOrganization", 2);
  profile.setText("RegisteredName", "Profile Registration");
  profile.setText("RegisteredVersion", "1.0.0");
  setNumbers(profile, "AdvertiseTypes", {2});
}

}  // namespace

const StoredInstance& InteropTable::addFixed(const char* className,
                                             const std::function<void(StoredInstance&)>& fill) {
  auto stored =
      std::make_unique<StoredInstance>(requireClass(className, CMPI_RC_ERR_INVALID_CLASS), kInteropNameSpace);
  fill(*stored);
  _rules.complete(*stored);
  stored->fixed = true;
  complete(*stored);
  const std::string name = stored->name;
  take(std::move(stored));
  return *find(name);
}

void InteropTable::addLink(const char* className, const Ended& one, const Ended& other) {
  addFixed(className, [&](StoredInstance& association) {
    setEnd(association, one.role, one.instance);
    setEnd(association, other.role, other.instance);
  });
}

void InteropTable::addFixed() {
  const auto& system = addFixed(
      kSystemClass, [this](StoredInstance& machine) { machine.setText("Name", _names.systemName()); });
  const auto& manager = addFixed("CIM_ObjectManager", fillManager);
  const auto& mechanism = addFixed("CIM_CIMXMLCommunicationMechanism", fillMechanism);
  const auto& service =
      addFixed("CIM_IndicationService", [this](StoredInstance& stored) { fillService(stored, _settings); });
  const auto& capabilities = addFixed("CIM_IndicationServiceCapabilities", [this](StoredInstance& stored) {
    fillCapabilities(stored, _settings);
  });
  const auto& profile = addFixed("CIM_RegisteredProfile", fillProfile);
  for (const StoredInstance* const hosted : {&manager, &service})
    addLink("CIM_HostedService", {"Antecedent", system}, {"Dependent", *hosted});
  addLink("CIM_CommMechanismForManager", {"Antecedent", manager}, {"Dependent", mechanism});
  addLink("CIM_ElementCapabilities", {"ManagedElement", service}, {"Capabilities", capabilities});
  addLink("CIM_ElementConformsToProfile", {"ConformantStandard", profile}, {"ManagedElement", profile});
  std::vector<std::string> nameSpaces = {kInteropNameSpace, _settings.sourceNameSpace};
  nameSpaces.insert(nameSpaces.end(), _settings.aliases.begin(), _settings.aliases.end());
  for (const std::string& nameSpace : nameSpaces) {
    const auto& described = addFixed("CIM_Namespace", [&](StoredInstance& stored) {
      stored.setText("ObjectManagerCreationClassName", "CIM_ObjectManager");
      stored.setText("ObjectManagerName", kManager);
      stored.setText("Name", nameSpace);
      setNumber(stored, "ClassInfo", 0);
    });
    addLink("CIM_NamespaceInManager", {"Antecedent", manager}, {"Dependent", described});
  }
}

}  // namespace ZebManager
