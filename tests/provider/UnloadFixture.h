#pragma once

#include <dlfcn.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "ProviderFixture.h"
#include "provider/EntryPoints.h"

namespace ZEB::test {

inline bool isMapped() {
  std::ifstream maps("/proc/self/maps");
  const std::string name = std::filesystem::path(ZEB_PLUGIN).filename();
  for (std::string line; std::getline(maps, line);) {
    if (line.find(name) != std::string::npos) return true;
  }
  return false;
}

/// The plug-in as the file that an object manager loads.
class UnloadTest : public ProviderTest {
 protected:
  void load() {
    // The strictest way of loading: everything resolved at once, everything shown to everybody.
    library = dlopen(ZEB_PLUGIN, RTLD_NOW | RTLD_GLOBAL);
    ASSERT_NE(library, nullptr) << dlerror();
    createInstanceMI =
        reinterpret_cast<decltype(createInstanceMI)>(dlsym(library, "_Generic_Create_InstanceMI"));
    createIndicationMI =
        reinterpret_cast<decltype(createIndicationMI)>(dlsym(library, "_Generic_Create_IndicationMI"));
    ASSERT_NE(createInstanceMI, nullptr);
    ASSERT_NE(createIndicationMI, nullptr);
  }
  void unload() {
    dlclose(library);
    EXPECT_FALSE(isMapped());
  }
  /// Two factory calls and an enumeration.
  void use() {
    FakeBroker::Call call(broker);
    instances = createInstanceMI(broker.get(), &call.context(), "ZEBEthernetPort", nullptr);
    ASSERT_NE(instances, nullptr);
    ASSERT_NE(createIndicationMI(broker.get(), &call.context(), "ZEBEthernetPort", nullptr), nullptr);
    ASSERT_EQ(enumerate(call), CMPI_RC_OK);
    EXPECT_EQ(call.result().instances.size(), 1U);
  }
  CMPIrc enumerate(FakeBroker::Call& call) const {
    auto* classPath = call.path({"root/jxv", "ZEB_EthernetPort"});
    return instances->ft->enumerateInstances(instances, &call.context(), &call.result(), classPath, nullptr)
        .rc;
  }
  void cleanupOnce() {
    FakeBroker::Call call(broker);
    EXPECT_EQ(instances->ft->cleanup(instances, &call.context(), 0).rc, CMPI_RC_OK);
  }

  void* library = nullptr;
  CMPIInstanceMI* instances = nullptr;
  decltype(&_Generic_Create_InstanceMI) createInstanceMI = nullptr;
  decltype(&_Generic_Create_IndicationMI) createIndicationMI = nullptr;
};

}  // namespace ZEB::test
