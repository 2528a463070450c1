#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <thread>

#include "LoadedPlugin.h"
#include "Namespace.h"
#include "support/Environment.h"
#include "support/Length.h"
#include "support/TestFolder.h"

// From the kernel's link message to the indication that the object manager is handed.

namespace ZEB::test {
namespace {

using namespace std::chrono_literals;

/// A busy machine under a sanitizer takes its time for a thousand ports.
constexpr auto kLong = 200s;

/// The plug-in on virtual ports of this kernel, with folders of its own and its timer.
class LiveAlertsTest : public testing::Test {
 protected:
  /// How often each event was sent, once no more come.
  std::map<std::string, int> settledEvents() const {
    EXPECT_TRUE(eventually(
        [&] {
          const std::size_t before = broker.deliveries().size();
          std::this_thread::sleep_for(500ms);
          return broker.deliveries().size() == before;
        },
        kLong));
    std::map<std::string, int> count;
    for (const auto& delivery : broker.deliveries()) {
      ++count[delivery.indication.getProperty("EventID").asString()];
    }
    return count;
  }
  /// How many elements sent an event at all, and had one of these as their last.
  int elementsWhoseLast(const std::set<std::string>& ids) const {
    std::map<std::string, std::string> last;
    for (const auto& delivery : broker.deliveries()) {
      last[delivery.indication.getProperty("AlertingManagedElement").asString()] =
          delivery.indication.getProperty("EventID").asString();
    }
    return static_cast<int>(
        std::ranges::count_if(last, [&](const auto& entry) { return ids.contains(entry.second); }));
  }
  /// Link messages that a pass has taken account of.
  std::uint64_t messagesSeen() const { return reported("linkMessages"); }
  /// How many passes there were, once no more come.
  std::uint64_t settledPasses() const {
    std::uint64_t before = 0;
    EXPECT_TRUE(eventually([&] {
      before = reported("passes");
      std::this_thread::sleep_for(500ms);
      return before != 0 && reported("passes") == before;
    }));
    return before;
  }

 private:
  std::uint64_t reported(const char* what) const {
    std::ifstream in(folder.path() / "run" / "health.json");
    const auto report = nlohmann::json::parse(in, nullptr, false);
    return report.is_object() ? report.value(what, std::uint64_t{0}) : 0;
  }

 protected:
  TestFolder folder;
  Environment config{"ZEB_CONFIG", "/nonexistent"};
  Environment store{"ZEB_STORE_DIR", folder.file("store")};
  Environment run{"ZEB_RUN_DIR", folder.file("run")};
  Environment includeVirtual{"ZEB_INCLUDE_VIRTUAL", "1"};
  Environment autostart{"ZEB_AUTOSTART", "1"};
  FakeBroker broker;
};

TEST_F(LiveAlertsTest, AThousandPortsThatGoDownAtOnceAreReportedEachOnce) {
  IN_NAMESPACE([this] {
    constexpr int kPorts = 1000;
    makePairs(kPorts);
    std::string groups;
    for (int i = 0; i < kPorts; ++i) groups += "link set b" + std::to_string(i) + " group 7\n";
    ipBatch(groups);
    LoadedPlugin plugin(broker);
    ASSERT_EQ(plugin.count("ZEB_EthernetPort"), 2U * kPorts);

    // One end of each pair is switched off, and the other loses its carrier.
    ip("link set group 7 down");
    // What goes on before all was seen is rightly never told.
    ASSERT_TRUE(broker.waitForDeliveries(2 * kPorts, kLong));
    EXPECT_EQ(settledEvents(), (std::map<std::string, int>{{"2", kPorts}, {"21", kPorts}}));
    EXPECT_EQ(elementsWhoseLast({"2", "21"}), 2 * kPorts) << "no port twice, and none left out";

    ip("link set group 7 up");
    ASSERT_TRUE(broker.waitForDeliveries(4 * kPorts, kLong));
    EXPECT_EQ(settledEvents(),
              (std::map<std::string, int>{{"2", kPorts}, {"21", kPorts}, {"3", kPorts}, {"20", kPorts}}));
    EXPECT_EQ(elementsWhoseLast({"3", "20"}), 2 * kPorts);
    EXPECT_EQ(broker.violations(), std::vector<std::string>{});
  });
}

TEST_F(LiveAlertsTest, ARepeatedLinkMessageIsNoAlert) {
  IN_NAMESPACE([this] {
    makePairs(1);
    LoadedPlugin plugin(broker);
    ip("link set b0 down");
    EXPECT_TRUE(broker.waitForDeliveries(2, 10s));
    const auto seen = messagesSeen();
    std::string same;
    for (int i = 0; i < 100; ++i)
      same += "link set a0 alias round" + std::to_string(i) + "\nlink set b0 down\n";
    ipBatch(same);
    EXPECT_TRUE(eventually([&] { return messagesSeen() >= seen + 100; })) << "every message is seen";
    EXPECT_EQ(settledEvents(), (std::map<std::string, int>{{"2", 1}, {"21", 1}}));
  });
}

// The address of a port that is down is no endpoint. The event comes first, and the build right after it.
TEST_F(LiveAlertsTest, TheModelFollowsWhatWasReported) {
  IN_NAMESPACE([this] {
    ip("link add a0 type veth peer name b0");
    for (const std::string end : {"a0", "b0"}) {
      // The kernel's own IPv6 addresses come when they like.
      ip("link set " + end + " addrgenmode none");
      ip("link set " + end + " up");
    }
    ip("address add 192.0.2.1/24 dev a0");
    LoadedPlugin plugin(broker);
    const auto endpointsBecome = [&](std::size_t count) {
      return eventually([&] { return plugin.count("ZEB_IPProtocolEndpoint") == count; });
    };
    ASSERT_TRUE(endpointsBecome(1));
    ip("link set a0 down");
    EXPECT_TRUE(broker.waitForDeliveries(2, 10s));
    EXPECT_TRUE(endpointsBecome(0));
    ip("link set a0 up");
    EXPECT_TRUE(broker.waitForDeliveries(4, 10s));
    EXPECT_TRUE(endpointsBecome(1));
    EXPECT_EQ(settledEvents(), (std::map<std::string, int>{{"2", 1}, {"3", 1}, {"20", 1}, {"21", 1}}));
  });
}

/// Ports without addresses of the kernel's own, which come when they like.
void makeBarePairs(int count) {
  std::string commands;
  for (int i = 0; i < count; ++i) {
    const std::string n = std::to_string(i);
    commands += "link add a" + n + " type veth peer name b" + n + "\n";
    for (const std::string& end : {"a" + n, "b" + n})
      commands += "link set " + end + " addrgenmode none\nlink set " + end + " up\n";
  }
  ipBatch(commands);
}

bool mayAdd(const std::string& link) {
  const bool may = std::system(("ip link add probed " + link + " 2>/dev/null").c_str()) == 0;
  if (may) ip("link del probed");
  return may;
}

// Of most no link message tells.
TEST_F(LiveAlertsTest, TheModelOfAHundredPortsFollowsWhateverChangesWithinASecond) {
  IN_NAMESPACE([this] {
    makeBarePairs(50);
    LoadedPlugin plugin(broker);
    const auto within = [](const std::string& change, const std::function<bool()>& isServed) {
      EXPECT_FALSE(isServed()) << change;
      ipBatch(change);
      const auto end = std::chrono::steady_clock::now() + 1s;
      bool there = false;
      while (!there && std::chrono::steady_clock::now() < end) {
        there = isServed();
        std::this_thread::sleep_for(5ms);
      }
      EXPECT_TRUE(there) << change;
    };
    const auto becomes = [&](const std::string& change, const char* className, std::size_t count) {
      within(change, [&] { return plugin.count(className) == count; });
    };
    const auto shows = [&](const std::string& change, const char* className, const char* property,
                           const CmpiCpp::CmpiData& value) {
      within(change, [&] { return plugin.serves(className, property, value); });
    };
    const char* port = "ZEB_EthernetPort";
    const char* lan = "ZEB_EthernetLANEndpoint";
    const char* endpoint = "ZEB_IPProtocolEndpoint";
    const char* gateway = "ZEB_EthernetRemoteServiceAccessPoint";
    ASSERT_EQ(plugin.count(port), 100U);
    ASSERT_EQ(plugin.count(endpoint), 0U);
    becomes("address add 192.0.2.1/24 dev a0", endpoint, 1);
    becomes("address add 192.0.2.2/24 dev a0", endpoint, 2);
    becomes("route add default via 192.0.2.254 dev a0", gateway, 2);
    becomes("route del default", gateway, 0);
    becomes("address add 2001:db8::1/64 dev a0 nodad", endpoint, 3);
    becomes("route add ::/0 via 2001:db8::2 dev a0", gateway, 1);
    becomes("address flush dev a0", endpoint, 0);
    CmpiCpp::CmpiArray address(1, CMPI_string);
    address.setElementAt(0, "020000000005");
    shows("link set a0 address 02:00:00:00:00:05", port, "NetworkAddresses", address);
    shows("link set a0 mtu 1400", port, "ActiveMaximumTransmissionUnit", std::uint64_t{1400});
    shows("link set a0 down\nlink set a0 name lan0\nlink set lan0 up", lan, "Description", "lan0");
    becomes("link add a99 type veth peer name b99", port, 102);
    becomes("link del a99", port, 100);
    if (mayAdd("link a1 type vlan id 5")) becomes("link add v0 link a1 type vlan id 5", lan, 101);
    if (mayAdd("type bond")) becomes("link add bond7 type bond", "ZEB_EthernetTeam", 1);
  });
}

// Containers give addresses to interfaces of their own all the time.
TEST_F(LiveAlertsTest, AnAddressOfWhatIsNotServedWakesNobody) {
  IN_NAMESPACE([this] {
    ip("link add a0 type veth peer name b0");
    ip("link add br0 type bridge");
    for (const std::string name : {"a0", "b0", "br0"}) {
      ip("link set " + name + " addrgenmode none");
      ip("link set " + name + " up");
    }
    LoadedPlugin plugin(broker);
    ip("link set a0 alias first");
    const auto passes = settledPasses();
    for (int i = 1; i < 10; ++i) ip("address add 192.0.2." + std::to_string(i) + "/24 dev br0");
    ip("address flush dev br0");
    EXPECT_EQ(settledPasses(), passes);
    ip("address add 192.0.2.1/24 dev a0");
    EXPECT_TRUE(eventually([&] { return plugin.count("ZEB_IPProtocolEndpoint") == 1; }));
    // From here on the bridge's gateway is that of a port.
    ip("link set b0 master br0");
    const auto bridged = settledPasses();
    ip("address add 198.51.100.1/24 dev br0");
    EXPECT_GT(settledPasses(), bridged);
  });
}

// An alert may be on its way, or not yet thought of, when the plug-in goes. Ten thousand rounds when there is
// time, in fifty processes: a sanitizer never forgets a library that was loaded, and gets slower with each.
class LoadedAgainAndAgain : public LiveAlertsTest, public testing::WithParamInterface<int> {};

TEST_P(LoadedAgainAndAgain, LoadEventAndUnloadRounds) {
  IN_NAMESPACE([&] {
    makePairs(4);
    for (int round = 0; round < 200 && !HasFailure(); ++round) {
      LoadedPlugin plugin(broker);
      const std::size_t before = broker.deliveries().size();
      ip(std::string("link set b0 ") + (round % 2 == 0 ? "down" : "up"));
      if (round % 10 == 0) {
        EXPECT_TRUE(broker.waitForDeliveries(before + 2, 10s)) << "round " << round;
      } else {
        std::this_thread::sleep_for(std::chrono::milliseconds(round % 70));
      }
    }
    EXPECT_EQ(broker.counts().attached, broker.counts().detached);
    EXPECT_EQ(broker.violations(), std::vector<std::string>{});
  });
}

INSTANTIATE_TEST_SUITE_P(Process, LoadedAgainAndAgain, testing::Range(0, length(1, 50)));

}  // namespace
}  // namespace ZEB::test
