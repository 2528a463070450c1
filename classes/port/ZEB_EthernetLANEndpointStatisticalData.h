#pragma once

#include "classes/port/AssociationFrame.h"

namespace ZEB {

/// A LAN endpoint and its counters.
class ZEB_EthernetLANEndpointStatisticalData : public AssociationFrame {
 public:
  ZEB_EthernetLANEndpointStatisticalData(const Logger& logger, const std::string& nameSpace,
                                         const CmpiCpp::CmpiObjectPath& lanEndpoint,
                                         const CmpiCpp::CmpiObjectPath& statistics);
};

}  // namespace ZEB
