#include "monitor/ZEB_EthEventSettings.h"

#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <optional>

#include "classes/port/PropertyTable.h"
#include "cmpicpp/CmpiFactories.h"
#include "cmpicpp/CmpiStatus.h"

namespace ZEB {

using CmpiCpp::CmpiData;
using CmpiCpp::CmpiInstance;
using CmpiCpp::CmpiPropertyList;
using CmpiCpp::CmpiStatus;

namespace {

constexpr const char kDescription[] = "QV Ethernet Event Provider configurable settings";

/// What the two kinds of settings differ in.
struct Kind {
  CMPIType type;
  const char* mismatch;
  std::uint32_t (*read)(const CmpiData&);
  CmpiData (*make)(std::uint32_t);
  std::uint32_t (*stored)(std::uint32_t number);
  void (*keep)(DataStore&, const std::string& key, std::uint32_t value);
};

constexpr Kind kNumber = {
    CMPI_uint32,
    "data type is not uint32.  throw CmpiStatus error!",
    [](const CmpiData& data) { return static_cast<std::uint32_t>(data.asUnsigned()); },
    [](std::uint32_t value) { return CmpiData(value); },
    [](std::uint32_t number) { return number; },
    [](DataStore& store, const std::string& key, std::uint32_t value) { store.setUInt32(key, value); },
};

constexpr Kind kFlag = {
    CMPI_boolean,
    "data type is not boolean.  throw CmpiStatus error!",
    [](const CmpiData& data) { return data.asBoolean() ? 1u : 0u; },
    [](std::uint32_t value) { return CmpiData(value != 0); },
    [](std::uint32_t number) { return number != 0 ? 1u : 0u; },
    [](DataStore& store, const std::string& key, std::uint32_t value) { store.setBool(key, value != 0); },
};

/// A setting: its name is the property's and the store's key.
struct Setting {
  CmpiCpp::NameLiteral name;
  const Kind& kind;
  std::uint32_t initial;
};

constexpr std::array<Setting, ZEB_EthEventSettings::kCount> kSettings = {{
    {"PollInterval", kNumber, 200},
    {"FloodThreshold", kNumber, 10},
    {"MaxFloodLevel", kNumber, 100},
    {"ActiveAdapterCountChanged", kFlag, false},
    {"MemberRoleChanged", kFlag, false},
    {"MemberStatusChanged", kFlag, false},
    {"MemberJoinedTeam", kFlag, false},
    {"MemberLeftTeam", kFlag, false},
    {"InterfaceAvailable", kFlag, false},
    {"InterfaceUnAvailable", kFlag, false},
    {"MonitorPorts", kFlag, true},
    {"MonitorLANEndpoints", kFlag, false},
    {"MonitorRedundancySets", kFlag, true},
}};

constexpr auto kPollInterval = static_cast<std::size_t>(EventSetting::PollInterval);

/// Settings are told apart by case.
std::optional<std::size_t> indexOf(const char* name) {
  const auto found = std::find_if(kSettings.begin(), kSettings.end(), [&](const Setting& setting) {
    return std::strcmp(setting.name.c_str(), name) == 0;
  });
  if (found == kSettings.end()) return std::nullopt;
  return static_cast<std::size_t>(found - kSettings.begin());
}

DataStore::Values defaults() {
  DataStore::Values values;
  for (const Setting& setting : kSettings) values.emplace(setting.name.view(), setting.initial);
  return values;
}

/// The names for a line of the log, as far as one takes them.
std::string listed(CmpiPropertyList names) {
  constexpr std::size_t kEnough = 500;
  std::string text = "(";
  for (; *names && text.size() < kEnough; ++names) text.append(text.size() > 1 ? ", " : "").append(*names);
  return text + (*names ? ", ...)" : ")");
}

using P = Properties<ZEB_EthEventSettings>;
const PropertyRows<ZEB_EthEventSettings> kTexts{
    P::key("InstanceId"),
    P::string("ElementName", constant(kDescription)),
    P::string("Caption", constant(kDescription)),
    P::string("Description", constant(kDescription)),
};

}  // namespace

ZEB_EthEventSettings::ZEB_EthEventSettings(const Logger& theLogger, const std::string& theNameSpace)
    : ManagedObject(theLogger, theNameSpace, kClassName, {{"InstanceId", "JXV:0"}}) {
  setSubject("settings");
  logger().info("calling makeDataStore...");
  _store = makeDataStore(std::string(kClassName.view()));
  if (!_store) logger().error("unable to open datastore %s", kClassName.view());
  for (std::size_t index = 0; index < kCount; ++index) {
    logger().info("initialize evSetting %s...", kSettings[index].name.view());
    _values[index] = kSettings[index].initial;
  }
  if (_store) _store->addDefaults(defaults());
  follow();
  _pollingDisabled = number(EventSetting::PollInterval) == 0;
}

std::any ZEB_EthEventSettings::memory() const {
  const std::lock_guard lock(_changing);
  Memory memory{_store, _followed, {}};
  std::copy(_values.begin(), _values.end(), memory.values.begin());
  return memory;
}

void ZEB_EthEventSettings::remember(const std::any& memory) {
  const auto& before = std::any_cast<const Memory&>(memory);
  // Without a store there was nothing but defaults to know.
  if (!before.store) return;
  const std::lock_guard lock(_changing);
  _store = before.store;
  _followed = before.followed;
  std::copy(before.values.begin(), before.values.end(), _values.begin());
  takeOver();
  _pollingDisabled = number(EventSetting::PollInterval) == 0;
}

void ZEB_EthEventSettings::follow() {
  const std::lock_guard lock(_changing);
  takeOver();
}

void ZEB_EthEventSettings::takeOver() {
  if (!_store) return;
  auto kept = _store->values();
  if (kept == _followed) return;
  for (std::size_t index = 0; index < kCount; ++index) {
    const auto found = kept->find(std::string(kSettings[index].name.view()));
    if (found != kept->end()) change(index, kSettings[index].kind.stored(found->second));
  }
  _followed = std::move(kept);
}

void ZEB_EthEventSettings::change(std::size_t index, std::uint32_t value) {
  if (value == _values[index]) return;
  _values[index] = value;
  // Any other number switches polling on again, even while the interval is 0.
  if (kSettings[index].kind.type == CMPI_uint32) _pollingDisabled = index == kPollInterval && value == 0;
}

CmpiInstance ZEB_EthEventSettings::makeInstance() {
  follow();
  CmpiInstance instance = CmpiCpp::makeCmpiInstance(ZEBUtil::getBroker(), makeObjectPath());
  kTexts.fill(instance, *this);
  for (std::size_t index = 0; index < kCount; ++index) {
    instance.addProperty(kSettings[index].name, kSettings[index].kind.make(_values[index]));
  }
  return instance;
}

void ZEB_EthEventSettings::modify(const CmpiInstance& instance, CmpiPropertyList names,
                                  void (*waitForEver)()) {
  logger().info("::modifyInstance() start");
  const Selection selection = select(names, waitForEver);
  const std::lock_guard lock(_changing);
  takeOver();
  for (std::size_t index = 0; index < kCount; ++index) {
    if (selection[index]) modifyOne(index, instance.getProperty(kSettings[index].name.view()));
  }
}

void ZEB_EthEventSettings::sleepOn() {
  pause();
}

ZEB_EthEventSettings::Selection ZEB_EthEventSettings::select(CmpiPropertyList names,
                                                             void (*waitForEver)()) const {
  Selection selection{};
  if (!names) {
    logger().info("property list is NULL");
    selection.fill(true);
    return selection;
  }
  logger().info("property list is NOT NULL");
  bool unknown = true;
  for (CmpiPropertyList name = names; *name; ++name) {
    if (const auto index = indexOf(*name)) {
      selection[*index] = true;
      unknown = false;
    } else if (unknown) {
      throw CmpiStatus(CMPI_RC_ERR_INVALID_PARAMETER);
    } else {
      // The walk stays at this name for ever; clients know it so.
      logger().error(
          "the property list %s has %s, which is no setting, after one that is: the change never ends",
          listed(names), *name);
      for (;;) waitForEver();
    }
  }
  return selection;
}

void ZEB_EthEventSettings::modifyOne(std::size_t index, const CmpiData& data) {
  const Setting& setting = kSettings[index];
  if (data.type() != setting.kind.type) {
    logger().info(setting.kind.mismatch);
    throw CmpiStatus(CMPI_RC_ERR_INVALID_PARAMETER);
  }
  const std::uint32_t wanted = data.isNull() ? 0 : setting.kind.read(data);
  if (wanted == _values[index]) return;
  logger().info("Change in %s property detected...", setting.name.view());
  // Kept first: when that fails, the client is told that nothing was.
  if (_store) setting.kind.keep(*_store, std::string(setting.name.view()), wanted);
  change(index, wanted);
}

}  // namespace ZEB
