#pragma once

#include <cstdint>
#include <mutex>
#include <string>

#include "classes/port/ManagedObject.h"
#include "classes/port/StatusWatcher.h"
#include "common/OperationalStatus.h"
#include "common/Physloc.h"
#include "ethernet/EthernetPort.h"

namespace ZEB {

class ZEB_EthernetIndication;

/// One physical Ethernet port of an adapter.
class ZEB_EthernetPort : public ManagedObject, public StatusWatcher {
 public:
  static constexpr CmpiCpp::NameLiteral kClassName = "ZEB_EthernetPort";

  ZEB_EthernetPort(const Logger& logger, const std::string& nameSpace, const std::uint32_t& number,
                   const std::uint32_t& controllerNumber, const physloc_t& location,
                   const std::string& partNumber, const EthernetPort& port);

  CmpiCpp::CmpiInstance makeInstance() override;
  CmpiCpp::CmpiInstance makeInstanceOf(CmpiCpp::CmpiPropertyList wanted) override;

  /// Refreshes the port's data and, when its status is another one than was seen last, sends the alert for
  /// the change: if ports are monitored, this port is included and indications are enabled. The change is
  /// remembered in any case. `visible` is always set. On the worker's thread.
  void manageDynamic(bool& visible, int indicationsEnabled, int monitorPorts,
                     const CmpiCpp::CmpiContext& context);

  bool look(const Watch& watch) override;
  operationalStatus lastStatus() override;

  std::any memory() const override;
  void remember(const std::any& memory) override;
  std::string report() const override;
  void resume(const std::string& report) override;

 private:
  struct Reading;
  using P = Properties<Reading>;
  static const PropertyRows<Reading> kProperties;

  CmpiCpp::CmpiDateTime timeOfLastStateChange();

  /// The status that a client sees: a port that has just turned degraded shows as in error until the change
  /// is recorded. The first report shows the status as it is.
  operationalStatus reportedStatus(const EthernetPort& record);

  void sendStatusAlert(ZEB_EthernetIndication& sender, const EthernetPort& record, operationalStatus before,
                       operationalStatus now, const CmpiCpp::CmpiContext& context);
  void rememberStatus(operationalStatus status);
  static std::string reportOf(operationalStatus status, std::int64_t timeOfChange);

  const std::uint32_t _controllerNumber;
  const physloc_t _location;
  const std::string _partNumber;
  EthernetPort _port;

  struct Memory {
    bool firstRefresh = true;
    std::int64_t timeOfLastStateChange = 0;  ///< seconds since the epoch; 0 when no change was seen
    operationalStatus lastStatus = operationalStatus::Unknown;
    bool included = true;
  };
  mutable std::mutex _mutex;  ///< guards `_memory`, which the worker changes beside requests
  Memory _memory;
};

}  // namespace ZEB
