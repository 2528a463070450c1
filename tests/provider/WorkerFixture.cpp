#include "WorkerFixture.h"

#include <stdexcept>

#include "ethernet/EthernetMRA.h"
#include "ethernet/EthernetTeamMRA.h"

namespace ZEB::test {

std::atomic<std::time_t> clockOffset{0};
std::atomic<std::time_t> clockStands{0};
std::function<void()> duringBuild, betweenReloads;
std::atomic<int> updates{0};
std::atomic<bool> sourcesFail{false};
std::atomic<int> chassisPaths{0};
std::vector<std::string> ghostsAdded, ghostsRemoved;

}  // namespace ZEB::test

using Names = std::vector<std::string>;

extern "C" {
std::time_t __real_time(std::time_t* out);
std::time_t __wrap_time(std::time_t* out) {
  const std::time_t stands = ZEB::test::clockStands;
  const std::time_t now = stands != 0 ? stands : __real_time(nullptr) + ZEB::test::clockOffset;
  if (out) *out = now;
  return now;
}
int __real__ZN3ZEB11EthernetMRA9updateAllEv(ZEB::EthernetMRA* self);
int __wrap__ZN3ZEB11EthernetMRA9updateAllEv(ZEB::EthernetMRA* self) {
  ++ZEB::test::updates;
  return __real__ZN3ZEB11EthernetMRA9updateAllEv(self);
}
bool __real__ZN3ZEB15EthernetTeamMRA11forceReloadERSt6vectorINSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEESaIS7_EESA_(
    ZEB::EthernetTeamMRA* self, Names& added, Names& removed);
bool __wrap__ZN3ZEB15EthernetTeamMRA11forceReloadERSt6vectorINSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEESaIS7_EESA_(
    ZEB::EthernetTeamMRA* self, Names& added, Names& removed) {
  if (ZEB::test::betweenReloads) ZEB::test::betweenReloads();
  const bool changed =
      __real__ZN3ZEB15EthernetTeamMRA11forceReloadERSt6vectorINSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEESaIS7_EESA_(
          self, added, removed);
  added.insert(added.end(), ZEB::test::ghostsAdded.begin(), ZEB::test::ghostsAdded.end());
  removed.insert(removed.end(), ZEB::test::ghostsRemoved.begin(), ZEB::test::ghostsRemoved.end());
  return changed || !ZEB::test::ghostsAdded.empty() || !ZEB::test::ghostsRemoved.empty();
}
}

// The factory of the real one cannot be reached by a C name: its result is returned through memory.
namespace ZEB {
std::unique_ptr<EthernetMRA> realEthernetMRAFactory(const Logger&, const CmpiCpp::CmpiContext&) asm(
    "__real__ZN3ZEB18ethernetMRAFactoryERKNS_6LoggerERKN7CmpiCpp11CmpiContextE");
std::unique_ptr<EthernetMRA> wrappedEthernetMRAFactory(const Logger&, const CmpiCpp::CmpiContext&) asm(
    "__wrap__ZN3ZEB18ethernetMRAFactoryERKNS_6LoggerERKN7CmpiCpp11CmpiContextE");
std::unique_ptr<EthernetMRA> wrappedEthernetMRAFactory(const Logger& logger,
                                                       const CmpiCpp::CmpiContext& context) {
  if (test::sourcesFail) throw std::runtime_error("no data source");
  return realEthernetMRAFactory(logger, context);
}
CmpiCpp::CmpiObjectPath realChassisPath() asm("__real__ZN3ZEB7ZEBUtil14getChassisPathEv");
CmpiCpp::CmpiObjectPath wrappedChassisPath() asm("__wrap__ZN3ZEB7ZEBUtil14getChassisPathEv");
CmpiCpp::CmpiObjectPath wrappedChassisPath() {
  ++test::chassisPaths;
  if (test::duringBuild) test::duringBuild();
  return realChassisPath();
}
}  // namespace ZEB
