#pragma once

#include "classes/port/AssociationFrame.h"

namespace ZEB {

/// A port and its counters.
class ZEB_EthernetPortStatisticalData : public AssociationFrame {
 public:
  ZEB_EthernetPortStatisticalData(const Logger& logger, const std::string& nameSpace,
                                  const CmpiCpp::CmpiObjectPath& port,
                                  const CmpiCpp::CmpiObjectPath& statistics);
};

}  // namespace ZEB
