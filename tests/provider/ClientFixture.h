#pragma once

#include <vector>

#include "ProviderFixture.h"
#include "monitor/LinkWatch.h"
#include "provider/EntryPoints.h"

namespace ZEB::test {

/// What a client of an object manager does, through the exported functions. The test says when the plug-in is
/// loaded and unloaded.
class ClientTest : public ProviderTest {
 protected:
  using CmpiInstance = CmpiCpp::CmpiInstance;

  void start() {
    FakeBroker::Call call(broker);
    interface = _Generic_Create_InstanceMI(broker.get(), &call.context(), "ZEBEthernetPort", nullptr);
    methods = _Generic_Create_MethodMI(broker.get(), &call.context(), "ZEBEthernetPort", nullptr);
  }
  void stop() {
    FakeBroker::Call call(broker);
    interface->ft->cleanup(interface, &call.context(), 1);
    methods->ft->cleanup(methods, &call.context(), 1);
  }
  void restart() {
    stop();
    start();
  }

  /// A pass of the background work, whatever the interval.
  void pass() {
    _netlinkEvent = true;
    FakeBroker::Call call(broker);
    const CMPIStatus status = methods->ft->invokeMethod(methods, &call.context(), &call.result(),
                                                        call.path({"root/jxv", "ZEB_AutoStartEthernetPort"}),
                                                        "PerformWork", call.args(), call.args());
    EXPECT_EQ(status.rc, CMPI_RC_OK);
  }

  std::vector<CmpiInstance> enumerate(const char* className) {
    FakeBroker::Call call(broker);
    interface->ft->enumerateInstances(interface, &call.context(), &call.result(),
                                      call.path({"root/jxv", className}), nullptr);
    return call.result().instances;
  }
  CmpiInstance only(const char* className) {
    const auto found = enumerate(className);
    EXPECT_EQ(found.size(), 1U) << className;
    return found.empty() ? CmpiInstance() : found.front();
  }

  CMPIrc modify(const CmpiCpp::CmpiObjectPath& path, const CmpiInstance& instance,
                std::vector<const char*> names) {
    names.push_back(nullptr);
    FakeBroker::Call call(broker);
    return interface->ft
        ->modifyInstance(interface, &call.context(), &call.result(), call.path(path), call.instance(instance),
                         names.data())
        .rc;
  }
  /// Changes one property, as a client does that sends the instance back with it.
  CMPIrc change(CmpiInstance instance, const char* name, const CmpiCpp::CmpiData& value) {
    instance.addProperty(name, value);
    return modify(instance.path(), instance, {name});
  }

  CmpiInstance membershipOfPort(int number) {
    const CmpiCpp::CmpiData wanted("JXV:ZEB_EthernetPort:" + std::to_string(number));
    for (const CmpiInstance& membership : enumerate("ZEB_EthernetMemberOfCollection")) {
      if (membership.getProperty("Member").asReference().getKey("DeviceID") == wanted) return membership;
    }
    ADD_FAILURE() << "port " << number;
    return {};
  }

  std::uint64_t groupStatus() {
    return only("ZEB_EthernetCollection").getProperty("GroupOperationalStatus").asArray()[0].asUnsigned();
  }

  CMPIInstanceMI* interface = nullptr;
  CMPIMethodMI* methods = nullptr;
};

}  // namespace ZEB::test
