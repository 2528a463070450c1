#pragma once

#include <gmock/gmock.h>

#include <atomic>
#include <ctime>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "PlayedHost.h"
#include "ProviderFixture.h"
#include "monitor/LinkWatch.h"
#include "provider/EntryPoints.h"

namespace ZEB::test {

// The clock, and some answers of the data library, are the test's: the linker leads them to these.
extern std::atomic<std::time_t> clockOffset;
extern std::atomic<std::time_t> clockStands;  ///< where it stands still; 0: it goes
extern std::atomic<int> updates;
extern std::atomic<int> chassisPaths;
extern std::function<void()> duringBuild;
extern std::function<void()> betweenReloads;  ///< after that of the adapters, before that of the teams
extern std::atomic<bool> sourcesFail;
extern std::vector<std::string> ghostsAdded, ghostsRemoved;

/// eth0 and eth1, and bond0 of eth2 and eth3, monitored through "PerformWork" alone.
class WorkerTest : public ProviderTest {
 protected:
  WorkerTest() : host(folder / "host.json") {
    host.addPort(2, "eth0");
    host.addPort(3, "eth1");
    host.addPort(4, "eth2", 10);
    host.addPort(5, "eth3", 10);
    host.addTeam(10, "bond0");
    host.play();
    configure("ZEB_SOURCE_FILE", host.file().string());
    start();
  }
  ~WorkerTest() override {
    stop();
    clockOffset = clockStands = 0;
    duringBuild = betweenReloads = nullptr;
    _netlinkEvent = false;
    sourcesFail = false;
    ghostsAdded.clear();
    ghostsRemoved.clear();
    unsetenv("ZEB_HEARTBEAT");
    Configuration::reset();
  }

  void start() {
    FakeBroker::Call call(broker);
    instances = _Generic_Create_InstanceMI(broker.get(), &call.context(), "ZEBEthernetPort", nullptr);
    methods = _Generic_Create_MethodMI(broker.get(), &call.context(), "ZEBEthernetPort", nullptr);
    indications = _Generic_Create_IndicationMI(broker.get(), &call.context(), "ZEBEthernetPort", nullptr);
    log->clear();
    updates = 0;
  }
  void stop() {
    FakeBroker::Call call(broker);
    instances->ft->cleanup(instances, &call.context(), 1);
    methods->ft->cleanup(methods, &call.context(), 1);
    indications->ft->cleanup(indications, &call.context(), 1);
  }
  void enableIndications() {
    FakeBroker::Call call(broker);
    call.enableIndications(indications);
  }

  void disableIndications() {
    FakeBroker::Call call(broker);
    call.disableIndications(indications);
  }

  struct Outcome {
    CMPIrc rc;
    std::string message;
    std::vector<CmpiCpp::CmpiData> returned;
  };
  Outcome pass() {
    FakeBroker::Call call(broker);
    const CMPIStatus status = methods->ft->invokeMethod(methods, &call.context(), &call.result(),
                                                        call.path({"root/jxv", "ZEB_AutoStartEthernetPort"}),
                                                        "PerformWork", call.args(), call.args());
    return {status.rc, status.msg ? status.msg->ft->getCharPtr(status.msg, nullptr) : "", call.result().data};
  }
  /// A pass that polls, whatever the interval.
  Outcome pollingPass() {
    _netlinkEvent = true;
    return pass();
  }
  static bool succeeded(const Outcome& outcome) {
    return outcome.rc == CMPI_RC_OK && outcome.returned == std::vector{CmpiCpp::CmpiData(std::uint32_t{0})};
  }

  std::vector<CmpiCpp::CmpiInstance> enumerate(const char* className) {
    FakeBroker::Call call(broker);
    instances->ft->enumerateInstances(instances, &call.context(), &call.result(),
                                      call.path({"root/jxv", className}), nullptr);
    return call.result().instances;
  }
  void change(CmpiCpp::CmpiInstance instance, const char* property, CmpiCpp::CmpiData value) {
    instance.addProperty(property, std::move(value));
    const char* list[] = {property, nullptr};
    FakeBroker::Call call(broker);
    ASSERT_EQ(instances->ft
                  ->modifyInstance(instances, &call.context(), &call.result(), call.path(instance.path()),
                                   call.instance(instance), list)
                  .rc,
              CMPI_RC_OK);
  }
  void set(const char* setting, CmpiCpp::CmpiData value) {
    change(enumerate("ZEB_EthEventSettings").at(0), setting, std::move(value));
    log->clear();
  }
  /// Changes the first port's filter, which marks the collection's state as changed.
  void markCollectionChanged() {
    change(enumerate("ZEB_EthernetMemberOfCollection").at(1), "Included", false);
    log->clear();
  }

  std::vector<std::string> events() const {
    std::vector<std::string> ids;
    for (const auto& delivery : broker.deliveries())
      ids.push_back(delivery.indication.getProperty("EventID").asString());
    return ids;
  }
  std::string description(std::size_t delivery) const {
    return broker.deliveries().at(delivery).indication.getProperty("Description").asString();
  }
  bool statusPosted() const { return std::filesystem::exists(folder / "run" / "status.json"); }

  PlayedHost host;
  CMPIInstanceMI* instances;
  CMPIMethodMI* methods;
  CMPIIndicationMI* indications;
};

}  // namespace ZEB::test
