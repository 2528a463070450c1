#include "Served.h"

#include <dlfcn.h>

#include <algorithm>
#include <chrono>
#include <set>
#include <stdexcept>

#include "InstanceText.h"
#include "Plugin.h"
#include "provider/EntryPoints.h"

namespace ZEB::test {
namespace {

/// What is remembered shows in when a port changed last, and in that what has turned degraded while it was
/// watched is in error: a team, the LAN endpoints of one and of its VLANs, its members, and the worst of all.
bool mayDiffer(const std::string& what, const std::string& anew, const std::string& lived) {
  static constexpr const char* kRemembering[] = {":ZEB_EthernetTeam.", ":ZEB_EthernetTeamMember.",
                                                 ":ZEB_EthernetLANEndpoint.", ":ZEB_EthernetCollection."};
  static const std::set<std::pair<std::string, std::string>> kTurned{
      {"uint16[] {3}", "uint16[] {6}"},
      {"uint16 10", "uint16 20"},
      {"string[] {\"Degraded\"}", "string[] {\"Error\"}"}};
  if (what.ends_with(" TimeOfLastStateChange")) return true;
  if (!kTurned.contains({anew, lived})) return false;
  return std::ranges::any_of(kRemembering, [&](const char* name) { return what.find(name) != what.npos; });
}

std::vector<std::string> classes() {
  auto names = objectClasses();
  names.insert(names.end(), associationClasses().begin(), associationClasses().end());
  return names;
}

void enumerate(FakeBroker::Call& call, CMPIInstanceMI* instances, const std::string& name, Served& served) {
  instances->ft->enumerateInstances(instances, &call.context(), &call.result(),
                                    call.path({"root/jxv", CmpiCpp::CmpiName(name)}), nullptr);
  std::size_t number = 0;
  for (const CmpiCpp::CmpiInstance& instance : call.result().instances) {
    const std::string start = instance.path().str() + " #" + std::to_string(number++) + " ";
    for (const auto& [property, value] : propertiesOf(instance)) served[start + property] = value;
  }
}

}  // namespace

Served servedBy(FakeBroker& broker, CMPIInstanceMI* instances) {
  Served served;
  for (const std::string& name : classes()) {
    FakeBroker::Call call(broker);
    enumerate(call, instances, name, served);
  }
  return served;
}

ServedMoment stateServedBy(FakeBroker& broker, CMPIInstanceMI* instances) {
  ServedMoment all;
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  std::set<std::optional<std::uint64_t>> states;
  for (const std::string& name : classes()) {
    if (name == "ZEB_EthernetStatistics" || name == "ZEB_EthEventSettings") continue;
    FakeBroker::Call call(broker);
    call.context().entries["ZEBSharedSince"] =
        static_cast<std::uint64_t>(std::chrono::nanoseconds(now).count());
    enumerate(call, instances, name, all.served);
    const auto state = call.context().entries.find("ZEBState");
    states.insert(state == call.context().entries.end() ? std::nullopt
                                                        : std::optional(state->second.asUnsigned()));
  }
  if (states.size() == 1) all.state = *states.begin();
  return all;
}

Served servedByANewOne() {
  FakeBroker broker;
  void* library = dlopen(ZEB_PLUGIN, RTLD_NOW | RTLD_LOCAL);
  if (!library) throw std::runtime_error(dlerror());
  const auto create =
      reinterpret_cast<decltype(&_Generic_Create_InstanceMI)>(dlsym(library, "_Generic_Create_InstanceMI"));
  Served served;
  {
    FakeBroker::Call call(broker);
    CMPIInstanceMI* instances = create(broker.get(), &call.context(), "ZEBEthernetPort", nullptr);
    served = servedBy(broker, instances);
    instances->ft->cleanup(instances, &call.context(), 1);
  }
  dlclose(library);
  return served;
}

std::string differences(const Served& anew, const Served& lived) {
  std::string text;
  for (const auto& [what, value] : anew) {
    const auto other = lived.find(what);
    if (other == lived.end()) {
      text += what + ": " + value + ", not served\n";
    } else if (value != other->second && !mayDiffer(what, value, other->second)) {
      text += what + ": " + value + ", served " + other->second + "\n";
    }
  }
  for (const auto& [what, value] : lived) {
    if (!anew.contains(what)) text += what + ": nothing, served " + value + "\n";
  }
  return text;
}

}  // namespace ZEB::test
