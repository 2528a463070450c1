#include <gtest/gtest.h>

#include <ctime>
#include <fstream>
#include <iostream>

#include "LiveBytes.h"
#include "MemoryHost.h"
#include "Plugin.h"
#include "recorded/SnapshotWriter.h"

// What things cost when there are many. Times are those of the processor, compared within one run, so that
// the machine does not matter much; and the best of rounds in which few and many take turns, so that what
// else runs on it does not either.

namespace {

/// Seconds that this thread has run.
double runTime() {
  timespec time{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

/// What the last build took, alone: without reading the configuration, the store and the file.
struct Build {
  double time = 0;
  std::size_t bytes = 0;
};
Build lastBuild;

}  // namespace

// The linker calls this in the place of the build, and the build by the other name.
extern "C" {
void __real__ZN3ZEB23ZEBEthernetPortProvider27_cmpiManagedInstanceFactoryEv(void* provider);
void __wrap__ZN3ZEB23ZEBEthernetPortProvider27_cmpiManagedInstanceFactoryEv(void* provider) {
  const std::size_t bytes = ZEB::test::liveBytes();
  const double begin = runTime();
  __real__ZN3ZEB23ZEBEthernetPortProvider27_cmpiManagedInstanceFactoryEv(provider);
  lastBuild = {runTime() - begin, ZEB::test::liveBytes() - bytes};
}
}

namespace ZEB::test {
namespace {

class CostTest : public ProviderTest {
 protected:
  CostTest() {
    // What is measured is what a provider costs that logs as little as it does by default.
    setProcessLogSink(log, LogLevel::Warn);
  }

  /// Ports on cards of four, each with an IPv4 and an IPv6 address, counters, and every fourth with a
  /// gateway.
  static MemoryHost hostOf(std::size_t ports) {
    MemoryHost host;
    for (std::size_t i = 0; i < ports; ++i) {
      const std::string name = "eth" + std::to_string(i);
      const auto card = i / 4;
      auto& link =
          host.addCardPort(name, static_cast<std::uint8_t>(card % 256), static_cast<std::uint8_t>(i % 4));
      auto hardware = *link.hardware;
      hardware.pci->domain = static_cast<std::uint32_t>(card / 256);
      hardware.deviceName = "Gigabit Adapter";
      link.hardware = std::make_shared<const ethernet::HardwareFacts>(std::move(hardware));
      finish(host, i);
    }
    return host;
  }

  /// Gives the port added last what it has beside its place.
  static void finish(MemoryHost& host, std::size_t i) {
    auto& link = host.snapshot().links.back();
    link.type = 1;
    link.address = ethernet::HardwareAddress{
        2, 0, 0, 0, static_cast<std::uint8_t>(i / 256), static_cast<std::uint8_t>(i)};
    link.statistics.emplace();
    const std::string place = std::to_string(i / 250) + "." + std::to_string(1 + i % 250);
    const auto add = [&](const std::string& text, std::uint8_t prefixLength) {
      auto& own = host.snapshot().addresses.emplace_back(address(text, prefixLength));
      own.index = link.index;
    };
    add("10.1." + place, 16);
    add("2001:db8::" + std::to_string(i % 10000), 64);
    if (i % 4 == 0) {
      auto& route = host.snapshot().routes.emplace_back();
      route.index = link.index;
      route.gateway = ethernet::parseIpAddress("10.1.255.254").value();
      route.table = 254;
    }
  }

  void play(const MemoryHost& host) {
    const auto file = folder / "host.json";
    std::ofstream(file) << ethernet::writeSnapshot(host.snapshot());
    serve(file.string());
  }

  /// Time of the fastest of several rounds, each of many calls.
  template <class Call>
  static double fastest(int rounds, int calls, Call call) {
    double best = 1e9;
    for (int round = 0; round < rounds; ++round) {
      const double begin = runTime();
      for (int i = 0; i < calls; ++i) call();
      best = std::min(best, (runTime() - begin) / calls);
    }
    return best;
  }

  static std::size_t countInstances(Plugin& plugin) {
    std::size_t count = 0;
    for (const auto& classes : {objectClasses(), associationClasses()}) {
      for (const std::string& className : classes) count += plugin.names(className).size();
    }
    return count;
  }

  struct Requests {
    double get, associators, references;
    std::size_t neighbours;

    friend Requests best(const Requests& a, const Requests& b) {
      return {std::min(a.get, b.get), std::min(a.associators, b.associators),
              std::min(a.references, b.references), std::max(a.neighbours, b.neighbours)};
    }
  };
  Requests requestsAt(std::size_t ports) {
    play(hostOf(ports));
    Plugin plugin(broker);
    const auto all = plugin.names("ZEB_EthernetPort");
    EXPECT_EQ(all.size(), ports);
    const auto port = all.at(ports / 2 + 1);
    const std::size_t neighbours = plugin.associators(port).size();
    EXPECT_GE(neighbours, 4U);  // controller, LAN endpoint, statistics, collection
    constexpr int kRounds = 15, kCalls = 100;
    return {fastest(kRounds, kCalls, [&] { plugin.get(port); }),
            fastest(kRounds, kCalls, [&] { plugin.associators(port); }),
            fastest(kRounds, kCalls, [&] { plugin.references(port); }), neighbours};
  }

  struct Cost {
    double time;
    double bytesAnInstance;
    std::size_t instances;

    friend Cost best(const Cost& a, const Cost& b) { return a.time <= b.time ? a : b; }
  };
  /// Of the builds after the first, which alone has the records made.
  Cost buildOf(const MemoryHost& host, int rounds = 4) {
    play(host);
    const auto source = ethernetMRAFactory(Logger(), {});
    EthernetAdapterDataObject adapter;
    EXPECT_EQ(source->getFirstData(false, adapter), EthernetMRA::kDelivered);
    Cost cost{1e9, 0, 0};
    for (int round = 0; round < rounds; ++round) {
      Plugin plugin(broker);
      if (round > 0) cost.time = std::min(cost.time, lastBuild.time);
      if (round + 1 < rounds) continue;
      cost.instances = countInstances(plugin);
      cost.bytesAnInstance = static_cast<double>(lastBuild.bytes) / static_cast<double>(cost.instances);
    }
    return cost;
  }
};

void expectRatio(const char* what, double many, double few, double atMost) {
  std::cout << what << ": " << few * 1e6 << " us and " << many * 1e6 << " us, " << many / few << " times\n";
  EXPECT_GT(few, 0) << what << " was not measured";
  EXPECT_LE(many / few, atMost) << what;
}

/// The best of `few` and of `many`, which take turns.
template <class Few, class Many>
auto bestOfTurns(int rounds, Few few, Many many) {
  auto costs = std::pair(few(), many());
  while (--rounds > 0) costs = {best(costs.first, few()), best(costs.second, many())};
  return costs;
}

TEST_F(CostTest, RequestsCostWhatTheyReturn) {
  const auto [few, many] = bestOfTurns(
      3, [this] { return requestsAt(100); }, [this] { return requestsAt(4000); });
  EXPECT_EQ(many.neighbours, few.neighbours);
  expectRatio("getInstance of a port, of 100 and of 4,000", many.get, few.get, 1.5);
  expectRatio("associators of a port, of 100 and of 4,000", many.associators, few.associators, 1.5);
  expectRatio("references of a port, of 100 and of 4,000", many.references, few.references, 1.5);
}

TEST_F(CostTest, ABuildIsLinearAndItsInstancesAreSmall) {
  const auto [few, many] = bestOfTurns(
      5, [this] { return buildOf(hostOf(1000)); }, [this] { return buildOf(hostOf(10000)); });
  expectRatio("build of 1,000 and of 10,000 ports", many.time, few.time, 12);
  std::cout << many.instances << " instances of " << many.bytesAnInstance << " bytes\n";
  EXPECT_GT(many.instances, 10000U * 10);
  EXPECT_GT(many.bytesAnInstance, 0);
  EXPECT_LE(many.bytesAnInstance, 600);
}

/// Teams of eight members, and VLANs on the first `carriers` of them.
MemoryHost teamsAndVlans(std::size_t teams, std::size_t vlans, std::size_t carriers) {
  MemoryHost host;
  auto& links = host.snapshot().links;
  const auto indexOfTeam = [](std::size_t team) { return static_cast<std::uint32_t>(team * 9 + 1); };
  for (std::size_t team = 0; team < teams; ++team) {
    host.addTeam("bond" + std::to_string(team));
    for (std::size_t member = 0; member < 8; ++member) {
      auto& port = host.addPort("eth" + std::to_string(team * 8 + member));
      port.address = ethernet::HardwareAddress{
          2, 0, 0, 0, static_cast<std::uint8_t>(team), static_cast<std::uint8_t>(member)};
      port.masterIndex = indexOfTeam(team);
      port.bondMember = ethernet::BondMemberFacts{0, 0, {}};
    }
    EXPECT_EQ(links.at(indexOfTeam(team) - 1).kind, "bond");
  }
  for (std::size_t vlan = 0; vlan < vlans; ++vlan) {
    auto& link = links.emplace_back();
    link.index = static_cast<std::uint32_t>(links.size());
    link.name = "vlan" + std::to_string(vlan + 1);
    setStatus(link, operationalStatus::OK);
    link.kind = "vlan";
    link.vlanId = static_cast<std::uint16_t>(vlan + 1);
    link.lowerIndex = indexOfTeam(vlan % carriers);
    auto& own = host.snapshot().addresses.emplace_back(address("10.0.0.1", 8));
    own.index = link.index;
  }
  return host;
}

TEST_F(CostTest, TeamsAndVlansAreBuiltInLinearTime) {
  const auto [half, all] = bestOfTurns(
      3, [this] { return buildOf(teamsAndVlans(32, 2047, 32)); },
      [this] { return buildOf(teamsAndVlans(64, 4094, 64)); });
  expectRatio("build of 32 teams with 2,047 VLANs and of 64 with 4,094", all.time, half.time, 3);
  // Team, LAN endpoint, ports with their adapters, VLANs with an address each: every one is there.
  EXPECT_GE(all.instances, 64U * 6 + 512U * (9 + 7) + 4094U * 6 + 3);
  EXPECT_EQ(2 * half.instances - all.instances, 3U) << "settings, collection and its hosting are there once";
  const Cost onOne = buildOf(teamsAndVlans(64, 4094, 1));
  expectRatio("4,094 VLANs on 64 teams and on one", onOne.time, all.time, 3);
  EXPECT_EQ(onOne.instances, all.instances);
}

}  // namespace
}  // namespace ZEB::test
