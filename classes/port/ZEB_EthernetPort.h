#pragma once

#include <cstdint>
#include <mutex>
#include <string>

#include "classes/port/ManagedObject.h"
#include "common/OperationalStatus.h"
#include "common/Physloc.h"
#include "ethernet/EthernetPort.h"

namespace ZEB {

/// One physical Ethernet port of an adapter.
class ZEB_EthernetPort : public ManagedObject {
 public:
  static constexpr CmpiCpp::NameLiteral kClassName = "ZEB_EthernetPort";

  ZEB_EthernetPort(const Logger& logger, const std::string& nameSpace, const std::uint32_t& number,
                   const std::uint32_t& controllerNumber, const physloc_t& location,
                   const std::string& partNumber, const EthernetPort& port);

  CmpiCpp::CmpiInstance makeInstance() override;

 private:
  struct Reading;
  using P = Properties<Reading>;
  static const PropertyRows<Reading> kProperties;

  CmpiCpp::CmpiDateTime timeOfLastStateChange();
  std::string description(const EthernetPort& port) const;

  /// The status that a client sees: a port that has just turned degraded shows as in error until the change
  /// is recorded. The first report shows the status as it is.
  operationalStatus reportedStatus();

  const std::uint32_t _controllerNumber;
  const physloc_t _location;
  const std::string _partNumber;
  EthernetPort _port;

  // What the port remembers, which the worker changes beside requests; never held while something is sent.
  std::mutex _memory;
  bool _firstRefresh = true;
  std::int64_t _timeOfLastStateChange = 0;  ///< seconds since the epoch; 0 when no change was seen
  operationalStatus _lastStatus = operationalStatus::Unknown;
};

}  // namespace ZEB
