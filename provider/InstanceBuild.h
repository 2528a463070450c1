#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "classes/port/EndpointTypes.h"
#include "classes/port/InterfaceRecord.h"
#include "ethernet/EthernetAdapterDataObject.h"
#include "ethernet/EthernetTeamDataObject.h"
#include "provider/TeamRecord.h"
#include "provider/ZEBEthernetPortProvider.h"

namespace ZEB {

class ZEB_EthernetCollection;

/// One build of all managed instances, from the data sources into the provider's collection: the counters
/// that number them and the steps in their order. The caller holds the collection mutex, or nobody can call
/// yet.
class ZEBEthernetPortProvider::InstanceBuild {
 public:
  explicit InstanceBuild(ZEBEthernetPortProvider& provider);

  void run();

 private:
  struct FamilyRule;

  void buildTeamInstances();
  void buildTeam(const EthernetTeamDataObject& team);
  void buildAdapters();
  void buildAdapter(const EthernetAdapterDataObject& adapter);
  void buildPort(const CmpiCpp::CmpiObjectPath& controller, const physloc_t& location,
                 const std::string& partNumber, const EthernetPort& port);
  void buildPortVLanInstances(const CmpiCpp::CmpiObjectPath& port, const EthernetPort& record);
  void buildStatistics(const CmpiCpp::CmpiObjectPath& port, const EthernetPort& record);
  /// What comes when there is a team or a port: the settings, the collection, and the place of every team and
  /// port in it.
  void buildCollection();
  void buildMemberships(ZEB_EthernetCollection& collection);
  void buildTeamMember(const PortEntry& entry);
  /// Makes the port known to the store, so that its filter can be kept. What is there stays.
  void keepFilter(ZEB_EthernetPort& port);

  /// A LAN endpoint of an interface with its IP endpoints and gateways. `ToLANEndpoint` ties it to `carrier`,
  /// the port or the team that the interface is or stands on.
  template <class ToLANEndpoint>
  void buildEndpoint(const CmpiCpp::CmpiObjectPath& carrier, const InterfaceRecord& interface);
  /// The IP endpoints for `addresses` addresses of one family.
  void buildAddresses(const FamilyRule& rule, std::size_t addresses,
                      const CmpiCpp::CmpiObjectPath& lanEndpoint, const InterfaceRecord& interface);
  /// A gateway, once for every IP endpoint that uses it.
  void buildGateway(const CmpiCpp::CmpiObjectPath& ipEndpoint, const InterfaceRecord& interface);

  /// The position of the first team that has a member of the port's name, or `PortEntry::kNoTeam`.
  std::int32_t findTeamOfPort(const EthernetPort& port) const;

  /// Makes an instance of a class and hands it to the collection, visible. `arguments` follow the logger and
  /// the namespace, which every class takes first.
  template <class Class, class... Arguments>
  Class& create(Arguments&&... arguments) {
    auto* instance = new Class(_provider._logger, _nameSpace, arguments...);
    _provider._collection.createInstance(instance);
    instance->setVisible(true);
    return *instance;
  }
  /// Likewise, for an instance that is only needed as the end of associations.
  template <class Class, class... Arguments>
  CmpiCpp::CmpiObjectPath createEnd(const Arguments&... arguments) {
    return create<Class>(arguments...).makeObjectPath();
  }

  ZEBEthernetPortProvider& _provider;
  const std::string _nameSpace;
  const CmpiCpp::CmpiObjectPath _system;

  std::uint32_t _teamNumber = 1;
  std::uint32_t _adapterNumber = 1;
  std::uint32_t _portNumber = 1;  ///< goes on from one adapter to the next
  // Shared by teams, ports and VLANs; they wrap.
  std::uint16_t _lanEndpointNumber = 1;
  std::uint16_t _ipEndpointNumber = 1;

  std::vector<TeamRecord> _teams;
  std::unordered_map<std::string, std::int32_t> _teamOfMember;  ///< by the member's name, the first team
  std::vector<PortEntry> _ports;
  bool _filterIsKept = true;  ///< false once the store has failed
};

}  // namespace ZEB
