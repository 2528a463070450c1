#pragma once

#include "PlayedHost.h"
#include "UnloadFixture.h"

namespace ZEB::test {

/// The plug-in as an object manager has it, on a recording that the test changes: loaded, with its timer,
/// with indications enabled.
class LoadedTest : public UnloadTest {
 protected:
  explicit LoadedTest(std::uint32_t ports) {
    for (std::uint32_t i = 0; i < ports; ++i) host.addPort(2 + i, "eth" + std::to_string(i));
    host.play();
    configure("ZEB_SOURCE_FILE", host.file().string());
    configure("ZEB_AUTOSTART", "1");
    begin();
  }
  ~LoadedTest() override {
    if (isMapped()) unload();
  }

  void begin() {
    load();
    FakeBroker::Call call(broker);
    instances = create<CMPIInstanceMI>("_Generic_Create_InstanceMI", call);
    methods = create<CMPIMethodMI>("_Generic_Create_MethodMI", call);
    indications = create<CMPIIndicationMI>("_Generic_Create_IndicationMI", call);
    broker.serve(methods);
    call.enableIndications(indications);
  }

  PlayedHost host{folder / "host.json"};
  CMPIMethodMI* methods = nullptr;
  CMPIIndicationMI* indications = nullptr;

 private:
  template <class Interface>
  Interface* create(const char* entry, FakeBroker::Call& call) {
    using Factory = Interface* (*)(const CMPIBroker*, const CMPIContext*, const char*, CMPIStatus*);
    const auto factory = reinterpret_cast<Factory>(dlsym(library, entry));
    Interface* made = factory(broker.get(), &call.context(), "ZEBEthernetPort", nullptr);
    EXPECT_NE(made, nullptr) << entry;
    return made;
  }
};

}  // namespace ZEB::test
