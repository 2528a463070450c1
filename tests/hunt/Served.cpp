#include "Served.h"

#include <dlfcn.h>

#include <algorithm>
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

}  // namespace

Served servedBy(FakeBroker& broker, CMPIInstanceMI* instances) {
  Served served;
  auto names = objectClasses();
  names.insert(names.end(), associationClasses().begin(), associationClasses().end());
  for (const std::string& name : names) {
    FakeBroker::Call call(broker);
    instances->ft->enumerateInstances(instances, &call.context(), &call.result(),
                                      call.path({"root/jxv", CmpiCpp::CmpiName(name)}), nullptr);
    std::size_t number = 0;
    for (const CmpiCpp::CmpiInstance& instance : call.result().instances) {
      const std::string start = instance.path().str() + " #" + std::to_string(number++) + " ";
      for (const auto& [property, value] : propertiesOf(instance)) served[start + property] = value;
    }
  }
  return served;
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
