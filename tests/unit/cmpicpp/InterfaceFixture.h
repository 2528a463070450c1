#pragma once

#include <gmock/gmock.h>

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "cmpicpp/CmpiAssociationProvider.h"
#include "cmpicpp/CmpiIndicationProvider.h"
#include "cmpicpp/CmpiInstanceProvider.h"
#include "cmpicpp/CmpiMethodProvider.h"
#include "cmpicpp/CmpiStatus.h"
#include "cmpicpp/ManagementInterfaces.h"
#include "support/FakeBroker.h"

// A provider that notes what reaches it, behind the C interfaces.

namespace CmpiCpp {

/// Offers nothing of its own.
class BareProvider : public CmpiInstanceProvider,
                     public CmpiAssociationProvider,
                     public CmpiMethodProvider,
                     public CmpiIndicationProvider {
 public:
  explicit BareProvider(const CmpiBroker& broker) : _broker(broker) {}
  CmpiBroker getBroker() const override { return _broker; }

 private:
  CmpiBroker _broker;
};

/// Notes its calls and does what the test wants in them.
class Provider : public BareProvider {
 public:
  using BareProvider::BareProvider;

  void enumInstanceNames(CmpiObjectPathResult& result, const CmpiContext&,
                         const CmpiObjectPath& path) override {
    if (during) during();
    result.returnObjectPath(path);
    result.returnObjectPath(CmpiObjectPath("n", "Second"));
  }
  void getInstance(CmpiInstanceResult& result, const CmpiContext&, const CmpiObjectPath& path,
                   CmpiPropertyList properties) override {
    CmpiInstance instance(path);
    instance.addProperty("A", std::uint16_t{1});
    instance.addProperty("B", "b");
    instance.keepOnly(properties);
    result.returnInstance(instance);
  }
  void modifyInstance(const CmpiContext&, const CmpiObjectPath& path, const CmpiInstance& instance,
                      CmpiPropertyList properties) override {
    modified =
        path.str() + " " + instance.getProperty("A").asString() + " " + (properties ? *properties : "-");
  }
  void associators(CmpiInstanceResult&, const CmpiContext&, const CmpiObjectPath&,
                   const CmpiName& associationClass, const CmpiName& resultClass, const CmpiName& role,
                   const CmpiName& resultRole, CmpiPropertyList) override {
    filters = {associationClass.str(), resultClass.str(), role.str(), resultRole.str()};
  }
  void invokeMethod(CmpiMethodResult& result, const CmpiContext&, const CmpiObjectPath&,
                    const CmpiName& method, const CmpiArgs& in, CmpiArgs& out) override {
    out.setArg("Echo", in.findArg("In") ? *in.findArg("In") : CmpiData("none"));
    if (!method.empty()) result.returnData(std::uint32_t{7});
  }
  void enableIndications(const CmpiContext&) override { ++enabled; }
  void disableIndications(const CmpiContext&) override { --enabled; }
  void mustPoll(const CmpiContext&, const char*, const CmpiObjectPath& path) override {
    polled = path.empty();
  }
  bool activateFilter(const CmpiContext&, const char* eventType, const CmpiObjectPath& path,
                      bool first) override {
    activated = std::string(eventType) + " " + path.str() + (first ? " first" : "");
    return first;
  }

  std::function<void()> during;
  std::string modified, activated;
  std::vector<std::string> filters;
  int enabled = 0;
  bool polled = false;
};

class InterfaceTest : public testing::Test {
 protected:
  explicit InterfaceTest(const ZEB::test::Habits& habits = ZEB::test::kEmbeddedHabits) : broker(habits) {
    open(provider);
  }
  ~InterfaceTest() override { interfaces.close(std::chrono::milliseconds(0)); }

  void open(CmpiProvider& to) {
    to.setInterfaces(&interfaces);
    interfaces.open(&to, broker.handle());
  }

  CMPIStatus enumerateNames(ZEB::test::FakeBroker::Call& call) {
    return interfaces.instanceMI()->ft->enumerateInstanceNames(interfaces.instanceMI(), &call.context(),
                                                               &call.result(), call.path({"n", "First"}));
  }

  CmpiInstance get(const CmpiObjectPath& path, const char** list) {
    ZEB::test::FakeBroker::Call call(broker);
    auto* mi = interfaces.instanceMI();
    EXPECT_EQ(mi->ft->getInstance(mi, &call.context(), &call.result(), call.path(path), list).rc, CMPI_RC_OK);
    return call.result().instances.at(0);
  }

  ZEB::test::FakeBroker broker;
  int released = 0;
  bool mayRelease = true;
  ManagementInterfaces interfaces{[this](const CmpiContext&, bool) {
    released += mayRelease ? 1 : 0;
    return mayRelease;
  }};
  Provider provider{broker.handle()};
};

inline std::string message(const CMPIStatus& status) {
  return status.msg ? static_cast<const ZEB::test::FakeString*>(status.msg)->text : "";
}

}  // namespace CmpiCpp
