#include "DataLibrary.h"

#include "ethernet/EthernetAdapterDataObject.h"
#include "ethernet/EthernetMRA.h"
#include "ethernet/EthernetPort.h"
#include "ethernet/EthernetTeamMRA.h"

using ZEB::test::DataLibrary;

namespace {

DataLibrary* installed = nullptr;

/// Counts a record; false when the walk is to fail instead.
bool mayDeliver(std::optional<std::size_t> DataLibrary::*left) {
  if (!installed || !(installed->*left)) return true;
  return (*(installed->*left))-- > 0;
}

}  // namespace

namespace ZEB::test {

DataLibrary::DataLibrary() {
  installed = this;
}
DataLibrary::~DataLibrary() {
  installed = nullptr;
}
DataLibrary* DataLibrary::current() {
  return installed;
}

}  // namespace ZEB::test

// The linker calls __wrap_X for X, which is __real_X; a member function takes its object first.
extern "C" {

#define REAL(name) __real_##name
#define WRAP(name) __wrap_##name
// A pointer to a member keeps a flag in the lowest bit of the address.
#define WRAPPER [[gnu::aligned(16)]]

#define PORT_STATUS(prefix) prefix(_ZNK3ZEB12EthernetPort13getPortStatusERNS_17operationalStatusE)
int PORT_STATUS(REAL)(const ZEB::EthernetPort*, ZEB::operationalStatus&);
WRAPPER int PORT_STATUS(WRAP)(const ZEB::EthernetPort* port, ZEB::operationalStatus& status) {
  if (!installed || !installed->portStatus) return PORT_STATUS(REAL)(port, status);
  status = *installed->portStatus;
  return 0;
}

#define CAPABILITIES(prefix) prefix(_ZNK3ZEB12EthernetPort15getCapabilitiesEv)
std::vector<std::uint16_t> CAPABILITIES(REAL)(const ZEB::EthernetPort*);
WRAPPER std::vector<std::uint16_t> CAPABILITIES(WRAP)(const ZEB::EthernetPort* port) {
  return installed && installed->capabilities ? *installed->capabilities : CAPABILITIES(REAL)(port);
}

#define NETWORK_ADDRESSES(prefix) prefix(_ZNK3ZEB12EthernetPort16networkAddressesB5cxx11Ev)
std::vector<std::string> NETWORK_ADDRESSES(REAL)(const ZEB::EthernetPort*);
WRAPPER std::vector<std::string> NETWORK_ADDRESSES(WRAP)(const ZEB::EthernetPort* port) {
  const auto known = NETWORK_ADDRESSES(REAL)(port);
  std::vector<std::string> all;
  for (std::size_t i = 0; i < (installed ? installed->networkAddressRepeats : 1); ++i) {
    all.insert(all.end(), known.begin(), known.end());
  }
  return all;
}

#define NEXT_TEAM(prefix) prefix(_ZN3ZEB15EthernetTeamMRA11getNextDataEbRNS_22EthernetTeamDataObjectE)
int NEXT_TEAM(REAL)(ZEB::EthernetTeamMRA*, bool, ZEB::EthernetTeamDataObject&);
WRAPPER int NEXT_TEAM(WRAP)(ZEB::EthernetTeamMRA* source, bool fresh, ZEB::EthernetTeamDataObject& team) {
  return mayDeliver(&DataLibrary::teamsUntilFailure) ? NEXT_TEAM(REAL)(source, fresh, team)
                                                     : ZEB::EthernetTeamMRA::kFailed;
}

#define NEXT_ADAPTER(prefix) prefix(_ZN3ZEB11EthernetMRA11getNextDataEbRNS_25EthernetAdapterDataObjectE)
int NEXT_ADAPTER(REAL)(ZEB::EthernetMRA*, bool, ZEB::EthernetAdapterDataObject&);
WRAPPER int NEXT_ADAPTER(WRAP)(ZEB::EthernetMRA* source, bool fresh,
                               ZEB::EthernetAdapterDataObject& adapter) {
  return mayDeliver(&DataLibrary::adaptersUntilFailure) ? NEXT_ADAPTER(REAL)(source, fresh, adapter)
                                                        : ZEB::EthernetMRA::kFailed;
}

#define LOCATION(prefix) prefix(_ZNK3ZEB25EthernetAdapterDataObject10getPhysLocER9physloc_t)
int LOCATION(REAL)(const ZEB::EthernetAdapterDataObject*, physloc_t&);
WRAPPER int LOCATION(WRAP)(const ZEB::EthernetAdapterDataObject* adapter, physloc_t& location) {
  if (!installed || !installed->location) return LOCATION(REAL)(adapter, location);
  location = *installed->location;
  return 0;
}

#define VERSION(prefix) \
  prefix(               \
      _ZNK3ZEB25EthernetAdapterDataObject18getHardwareVersionERNSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEE)
int VERSION(REAL)(const ZEB::EthernetAdapterDataObject*, std::string&);
WRAPPER int VERSION(WRAP)(const ZEB::EthernetAdapterDataObject* adapter, std::string& version) {
  if (!installed || !installed->hardwareVersion) return VERSION(REAL)(adapter, version);
  version = *installed->hardwareVersion;
  return 0;
}

#define LOCATION_INFO(prefix) \
  prefix(                     \
      _ZN3ZEB10ZEBPhysloc25createLocationInfoVectorsERK9physloc_tRSt6vectorINSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEESaISA_EERS4_ItSaItEE)
int LOCATION_INFO(REAL)(const physloc_t&, std::vector<std::string>&, std::vector<std::uint16_t>&);
WRAPPER int LOCATION_INFO(WRAP)(const physloc_t& location, std::vector<std::string>& texts,
                                std::vector<std::uint16_t>& kinds) {
  const int result = LOCATION_INFO(REAL)(location, texts, kinds);
  if (installed && installed->unevenLocationInfo) kinds.push_back(0);
  return result;
}

}  // extern "C"
