#include <gmock/gmock.h>
#include <unistd.h>

#include <csignal>
#include <fstream>
#include <thread>

#include "KernelSnapshot.h"
#include "Namespace.h"
#include "ethernet/EthernetMRA.h"
#include "ethernet/Sources.h"
#include "kernel/KernelSource.h"
#include "model/Model.h"
#include "posix/ChildProcess.h"
#include "support/TestFolder.h"

namespace ZEB::test {
namespace {

using namespace ethernet;

/// `ip -batch` over and over, in a process of its own that ends with this object.
class Storm {
 public:
  explicit Storm(const std::string& commands)
      : _loop("while ip -batch " + _folder.write("batch", commands) + "; do :; done"), _process([this] {
          setpgid(0, 0);
          return execl("/bin/sh", "sh", "-c", _loop.c_str(), nullptr);
        }) {}
  ~Storm() { kill(-_process.id(), SIGKILL); }

 private:
  const TestFolder _folder;
  const std::string _loop;
  ChildProcess _process;
};

constexpr int kPorts = 40;

/// Each port goes round: larger frames, then an address; the address away, then smaller frames. So whoever
/// has the address has the larger frames, at every single moment, but not across moments.
std::string roundOfAll() {
  std::string commands;
  for (int i = 0; i < kPorts; ++i) {
    const std::string n = std::to_string(i);
    commands += "link set a" + n + " mtu 1400\naddr add 10.7." + n + ".1/24 dev a" + n + "\n";
  }
  for (int i = 0; i < kPorts; ++i) {
    const std::string n = std::to_string(i);
    commands += "addr del 10.7." + n + ".1/24 dev a" + n + "\nlink set a" + n + " mtu 1300\n";
  }
  return commands;
}

void expectUnmixed(const LinkFacts& link, const std::vector<AddressFacts>& addresses) {
  for (const AddressFacts& address : addresses) {
    if (address.index == link.index && address.address.family == IpFamily::V4) {
      ASSERT_EQ(link.mtu, 1400u) << link.name << " with the address of another moment";
    }
  }
}

/// As it is without a storm.
void expectInOrder(const HostSnapshot& snapshot) {
  EXPECT_TRUE(std::ranges::is_sorted(snapshot.links, {}, &LinkFacts::index));
  for (const IpFamily family : {IpFamily::V4, IpFamily::V6}) {
    std::vector<std::uint32_t> interfaces;
    for (const AddressFacts& address : snapshot.addresses) {
      if (address.address.family == family) interfaces.push_back(address.index);
    }
    EXPECT_TRUE(std::ranges::is_sorted(interfaces));
  }
}

TEST(KernelStorm, NoSnapshotIsMixed) {
  IN_NAMESPACE([] {
    makePairs(kPorts);
    std::string first;
    for (int i = 0; i < kPorts; ++i) first += "link set a" + std::to_string(i) + " mtu 1300\n";
    ipBatch(first);
    KernelSource source;
    int answers = 0, changed = 0;
    {
      const Storm storm(roundOfAll());
      const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(3);
      std::size_t before = 0;
      while (std::chrono::steady_clock::now() < end) {
        const auto snapshot = source.readAll();
        if (!snapshot) continue;
        ++answers;
        changed += snapshot->addresses.size() != before;
        before = snapshot->addresses.size();
        for (const LinkFacts& link : snapshot->links) expectUnmixed(link, snapshot->addresses);
        expectInOrder(*snapshot);
        const auto one = source.readOne(snapshot->links.at(3).index);
        ASSERT_TRUE(one);
        if (!one->links.empty()) expectUnmixed(one->links.front(), one->addresses);
      }
    }
    EXPECT_GT(answers, 20) << "the storm holds nobody up";
    EXPECT_GT(changed, 5) << "it was a storm";
  });
}

TEST(KernelStorm, TheLastStateIsRight) {
  IN_NAMESPACE([] {
    makePairs(kPorts);
    EthernetMRA source(kernelInventory(true));
    EthernetAdapterDataObject adapter;
    EXPECT_EQ(source.updateAll(), 0);
    source.eventsProcessed();
    {
      std::string flips;
      for (const char* state : {"down", "up"}) {
        for (int i = 0; i < kPorts; ++i) flips += "link set b" + std::to_string(i) + " " + state + "\n";
      }
      const Storm storm(flips);
      const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(1);
      while (std::chrono::steady_clock::now() < end) source.updateAll();
    }
    std::string last;
    for (int i = 0; i < kPorts; ++i) {
      last += "link set b" + std::to_string(i) + (i % 2 == 0 ? " up\n" : " down\n");
    }
    ipBatch(last);
    // Only the announcements tell that there is something new.
    EXPECT_TRUE(eventually([&] {
      EXPECT_EQ(source.updateAll(), 0);
      int right = 0;
      for (int rc = source.getFirstData(false, adapter); rc == 0; rc = source.getNextData(false, adapter)) {
        std::string name;
        operationalStatus status{};
        adapter.ports.at(0).getOsDeviceName(name);
        if (adapter.ports.at(0).getPortStatus(status) != 0 || name[0] != 'a') continue;
        const bool even = std::stoi(name.substr(1)) % 2 == 0;
        right += status == (even ? operationalStatus::OK : operationalStatus::Error);
      }
      return right == kPorts;
    }));
    EXPECT_TRUE(source.ethEventDetected());
  });
}

TEST(KernelStorm, OverrunMeansEverythingMayHaveChanged) {
  IN_NAMESPACE([] {
    makePairs(20);
    KernelSource source;
    Listener deaf = Listener::open(std::nullopt);
    ASSERT_TRUE(comesToRest(source));
    (void)deaf.drain();
    std::string flips;
    for (int round = 0; round < 500; ++round) {
      for (int i = 0; i < 20; ++i) {
        flips += "link set a" + std::to_string(i) + " mtu " + std::to_string(1300 + round) + "\n";
      }
    }
    ipBatch(flips);
    EXPECT_TRUE(deaf.drain().everything) << "more was announced than the socket holds";
    EXPECT_FALSE(deaf.drain().any()) << "and it goes on hearing";
    ip("link set a3 mtu 1299");
    const Announcements heard = deaf.drain();
    EXPECT_FALSE(heard.everything);
    EXPECT_TRUE(heard.interfaces.contains(linkNamed(readAll(), "a3").index));
    EXPECT_TRUE(source.announced());
    const auto snapshot = source.readAll();
    ASSERT_TRUE(snapshot);
    for (const LinkFacts& link : snapshot->links) {
      if (link.name[0] != 'a') continue;
      EXPECT_EQ(link.mtu, link.name == "a3" ? 1299u : 1799u) << link.name;
    }
  });
}

TEST(KernelStorm, InterfacesThatComeAndGo) {
  IN_NAMESPACE([] {
    makePairs(5);
    KernelSource source;
    const Storm storm(
        "link add x0 type veth peer name y0\nlink set x0 up\naddr add 10.8.0.1/24 dev x0\nlink del x0\n");
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(2);
    int answers = 0;
    while (std::chrono::steady_clock::now() < end) {
      const auto snapshot = source.readAll();
      if (!snapshot) continue;
      ++answers;
      EXPECT_GE(buildModel(*snapshot, true)->ports.size(), 10u) << "those that stay are always there";
    }
    EXPECT_GT(answers, 20);
  });
}

}  // namespace
}  // namespace ZEB::test
