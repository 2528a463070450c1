#include <dlfcn.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

#include "ProviderFixture.h"
#include "provider/EntryPoints.h"
#include "support/NetworkNamespace.h"

// The plug-in as the file that an object manager loads.

namespace ZEB::test {
namespace {

bool isMapped() {
  std::ifstream maps("/proc/self/maps");
  const std::string name = std::filesystem::path(ZEB_PLUGIN).filename();
  for (std::string line; std::getline(maps, line);) {
    if (line.find(name) != std::string::npos) return true;
  }
  return false;
}

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
    auto* classPath = call.path({"root/jxv", "ZEB_EthernetPort"});
    ASSERT_EQ(
        instances->ft->enumerateInstances(instances, &call.context(), &call.result(), classPath, nullptr).rc,
        CMPI_RC_OK);
    EXPECT_EQ(call.result().instances.size(), 1U);
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

TEST_F(UnloadTest, LeavesTheProcessAfterEveryInterfaceWasCleanedUp) {
  load();
  use();
  cleanupOnce();
  cleanupOnce();
  unload();
}

TEST_F(UnloadTest, LeavesTheProcessWithAProviderThatIsStillAlive) {
  load();
  use();
  // Clean-up comes once an interface, whatever the number of factory calls.
  cleanupOnce();
  unload();
}

TEST_F(UnloadTest, LeavesTheProcessWithItsTimerRunning) {
  configure("ZEB_AUTOSTART", "1");
  load();
  use();
  EXPECT_EQ(broker.counts().prepared, 1);
  unload();
  EXPECT_EQ(broker.counts().attached, broker.counts().detached);
  EXPECT_TRUE(broker.violations().empty());
}

TEST_F(UnloadTest, LoadsAndUnloadsAThousandTimesWhileLinkMessagesArrive) {
  bool entered = true;
  std::thread([&] {
    entered = enterNewNetworkNamespace();
    if (!entered) return;
    std::atomic<bool> stop{false};
    std::thread changes([&] {
      for (bool up = true; !stop; up = !up) {
        setLoopback(up);
        std::this_thread::sleep_for(std::chrono::microseconds(500));
      }
    });
    for (int i = 0; i < 1000 && !HasFailure(); ++i) {
      load();
      use();
      if (i % 2 == 0) cleanupOnce();
      unload();
    }
    stop = true;
    changes.join();
  }).join();
  if (!entered) GTEST_SKIP() << "making a network namespace is not allowed here";
}

TEST(ExportsTest, ExactlyFourSymbolsAreShown) {
  std::ostringstream found;
  found << std::ifstream(ZEB_PLUGIN_SYMBOLS).rdbuf();
  std::istringstream lines(found.str());
  std::vector<std::string> names;
  for (std::string address, type, name; lines >> address >> type >> name;) names.push_back(name);
  EXPECT_EQ(names, (std::vector<std::string>{"_Generic_Create_AssociationMI", "_Generic_Create_IndicationMI",
                                             "_Generic_Create_InstanceMI", "_Generic_Create_MethodMI"}));
}

}  // namespace
}  // namespace ZEB::test
