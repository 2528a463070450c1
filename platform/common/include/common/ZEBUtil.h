#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>

#include "cmpicpp/CmpiBroker.h"
#include "cmpicpp/CmpiContext.h"
#include "cmpicpp/CmpiInstance.h"
#include "cmpicpp/CmpiObjectPath.h"
#include "common/Logger.h"
#include "common/OperationalStatus.h"

namespace ZEB {

/// What the whole process shares: the broker, the host's name, the stop request, the switches. Safe from
/// several threads.
class ZEBUtil {
 public:
  static void setBroker(const CmpiCpp::CmpiBroker& broker);
  static CmpiCpp::CmpiBroker getBroker();

  /// The host's name as the kernel has it; read again only after `forgetHostName`, so that all paths of one
  /// provider agree.
  static std::string getHostName();
  static void forgetHostName();

  /// What the configuration names; without, `ZEB_ComputerSystem`, keyed by "CreationClassName" and "Name"
  /// (the host name).
  static CmpiCpp::CmpiObjectPath getComputerSystemPath();
  /// `ZEB_ComputerSystemChassis`, keyed by "CreationClassName" and "Tag" (the host name).
  static CmpiCpp::CmpiObjectPath getChassisPath();

  /// "HealthState" of an operational status: OK and dormant 5, degraded kinds 10, error 20, non-recoverable
  /// 30, anything else 0.
  static std::uint16_t opstatusToHealthState(operationalStatus status);

  /// Asks background work to stop (`stop` 1) or lets it go on (0), for the subsystem given, and logs either.
  static void setStop(const Logger& logger, int stop, int subsystem);
  static bool stopRequested();

  static bool PerfmonEnabled();
  static bool HeartBeatIndicationsEnabled();

  /// Writes the instance as `status.json` in the run directory, whole or not at all, for monitoring agents
  /// that speak no CIM. A failure is a warning.
  static void postStatus(const Logger& logger, const CmpiCpp::CmpiContext& context,
                         const CmpiCpp::CmpiInstance& instance);

  /// What `wakeWorker` calls; null for nothing.
  static void setWorkerWaker(std::function<void()> waker);
  /// The data has been refreshed after a message of the kernel: whoever runs the worker may run it early.
  static void wakeWorker();

  /// Hands over how the worker is called at a time when there will be something to look at; null takes it
  /// back.
  static void setWorkerAlarm(std::function<void(std::chrono::steady_clock::time_point)> alarm);
  static void wakeWorkerAt(std::chrono::steady_clock::time_point when);
};

}  // namespace ZEB
