#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "classes/port/InstanceMaker.h"
#include "classes/team/EndpointBuild.h"
#include "classes/team/TeamBuild.h"
#include "ethernet/EthernetAdapterDataObject.h"
#include "provider/CollectionBuild.h"
#include "provider/ZEBEthernetPortProvider.h"

namespace ZEB {

/// One build of all managed instances, from the data sources into the provider's collection: the counters
/// that number them and the steps in their order. The caller holds the collection mutex, or nobody can call
/// yet.
class ZEBEthernetPortProvider::InstanceBuild {
 public:
  explicit InstanceBuild(ZEBEthernetPortProvider& provider);

  void run();

 private:
  void buildAdapters();
  void buildAdapter(const EthernetAdapterDataObject& adapter);
  void buildPort(const CmpiCpp::CmpiObjectPath& controller, const physloc_t& location,
                 const std::string& partNumber, const EthernetPort& port);
  void buildStatistics(const CmpiCpp::CmpiObjectPath& port, const EthernetPort& record);
  /// What comes when there is a team or a port.
  void buildCollection();

  ZEBEthernetPortProvider& _provider;
  const InstanceMaker _maker;
  EndpointBuild _endpoints;
  TeamBuild _teams;
  std::uint32_t _adapterNumber = 1;
  std::uint32_t _portNumber = 1;  ///< goes on from one adapter to the next
  std::vector<PortEntry> _ports;
};

}  // namespace ZEB
