#include "common/ZEBUtil.h"

#include <unistd.h>

#include <array>
#include <atomic>
#include <mutex>

#include "common/ClassNames.h"
#include "common/Configuration.h"

namespace ZEB {
namespace {

std::mutex mutex;
CmpiCpp::CmpiBroker broker;
std::string hostName;
std::function<void()> workerWaker;
std::function<void(std::chrono::steady_clock::time_point)> workerAlarm;
std::atomic<bool> stop{false};

std::string readHostName() {
  std::array<char, 256> name{};
  // A name that does not fit is cut off, and its terminator with it.
  if (gethostname(name.data(), name.size() - 1) != 0) return "localhost";
  return name.data();
}

}  // namespace

void ZEBUtil::setBroker(const CmpiCpp::CmpiBroker& theBroker) {
  const std::lock_guard lock(mutex);
  broker = theBroker;
}

CmpiCpp::CmpiBroker ZEBUtil::getBroker() {
  const std::lock_guard lock(mutex);
  return broker;
}

std::string ZEBUtil::getHostName() {
  const std::lock_guard lock(mutex);
  if (hostName.empty()) hostName = readHostName();
  return hostName;
}

void ZEBUtil::forgetHostName() {
  const std::lock_guard lock(mutex);
  hostName.clear();
}

CmpiCpp::CmpiObjectPath ZEBUtil::getComputerSystemPath() {
  const std::string host = getHostName();
  if (auto configured = Configuration::current()->computerSystemPath) {
    if (configured->host().empty()) configured->setHost(host);
    return *configured;
  }
  return {"root/jxv",
          kComputerSystemClass,
          host,
          {{"CreationClassName", kComputerSystemClass.view()}, {"Name", host}}};
}

CmpiCpp::CmpiObjectPath ZEBUtil::getChassisPath() {
  const std::string host = getHostName();
  return {"root/jxv", kChassisClass, host, {{"CreationClassName", kChassisClass.view()}, {"Tag", host}}};
}

std::uint16_t ZEBUtil::opstatusToHealthState(operationalStatus status) {
  enum : std::uint16_t { kUnknown = 0, kOk = 5, kDegraded = 10, kMajorFailure = 20, kNonRecoverable = 30 };
  switch (status) {
    case operationalStatus::OK:
    case operationalStatus::InService:
    case operationalStatus::Completed:
    case operationalStatus::Dormant:
      return kOk;
    case operationalStatus::Degraded:
    case operationalStatus::Stressed:
    case operationalStatus::PredictiveFailure:
      return kDegraded;
    case operationalStatus::Error:
    case operationalStatus::SupportingEntityInError:
      return kMajorFailure;
    case operationalStatus::NonRecoverableError:
      return kNonRecoverable;
    default:
      return kUnknown;
  }
}

void ZEBUtil::setStop(const Logger& logger, int request, int subsystem) {
  logger.info("setStop: %d, %d", request, subsystem);
  stop = request != 0;
}

bool ZEBUtil::stopRequested() {
  return stop;
}

bool ZEBUtil::PerfmonEnabled() {
  return Configuration::current()->perfmon;
}

bool ZEBUtil::HeartBeatIndicationsEnabled() {
  return Configuration::current()->heartbeat;
}

void ZEBUtil::setWorkerWaker(std::function<void()> waker) {
  const std::lock_guard lock(mutex);
  workerWaker = std::move(waker);
}

void ZEBUtil::wakeWorker() {
  // Under the lock, so that a waker that was taken back is not running any more.
  const std::lock_guard lock(mutex);
  if (workerWaker) workerWaker();
}

void ZEBUtil::setWorkerAlarm(std::function<void(std::chrono::steady_clock::time_point)> alarm) {
  const std::lock_guard lock(mutex);
  workerAlarm = std::move(alarm);
}

void ZEBUtil::wakeWorkerAt(std::chrono::steady_clock::time_point when) {
  const std::lock_guard lock(mutex);
  if (workerAlarm) workerAlarm(when);
}

}  // namespace ZEB
