#include <gtest/gtest.h>

#include "KernelSnapshot.h"
#include "Namespace.h"
#include "kernel/KernelSource.h"
#include "kernel/ParentDevices.h"

// What old kernels are asked in other ways comes to the same: this kernel answers in both.

namespace ZEB::test {
namespace {

using namespace ethernet;

/// The running kernel without generic netlink, and so without ethtool's.
HostSnapshot readWithoutEthtoolNetlink() {
  KernelSource source([] {
    auto routing = KernelWire::open(NETLINK_ROUTE);
    return Outcome<KernelAccess>(KernelAccess{std::make_unique<KernelQueries>(std::move(*routing), nullptr),
                                              Listener::open(std::nullopt), kernelEthtool()});
  });
  auto snapshot = source.readAll();
  EXPECT_TRUE(snapshot);
  return snapshot ? std::move(*snapshot) : HostSnapshot{};
}

/// How many links had settings at all.
int expectSameSettings() {
  const HostSnapshot today = readAll();
  const HostSnapshot old = readWithoutEthtoolNetlink();
  EXPECT_EQ(old.links.size(), today.links.size());
  int settings = 0;
  for (std::size_t i = 0; i < std::min(old.links.size(), today.links.size()); ++i) {
    EthtoolFacts expected = today.links[i].ethtool;
    // There is no ioctl for the reason of a missing link, nor for the standard group of counters.
    expected.extendedState.reset();
    expected.extendedSubstate.reset();
    EthtoolFacts found = old.links[i].ethtool;
    expected.mac = found.mac = {};
    EXPECT_EQ(found, expected) << today.links[i].name;
    settings += expected.supported.has_value();
  }
  return settings;
}

TEST(OldKernel, VirtualInterfacesHaveTheSameSettings) {
  IN_NAMESPACE([] {
    makePairs(2);
    ip("link set b1 down");
    EXPECT_EQ(expectSameSettings(), 4);
  });
}

TEST(OldKernel, CardsHaveTheSameSettings) {
  expectSameSettings();
}

TEST(OldKernel, SysfsHasTheSameDevicesBehindInterfaces) {
  const HostSnapshot today = readAll();
  ParentDevices parents;
  int cards = 0;
  for (const LinkFacts& link : today.links) {
    LinkFacts silent = link;
    silent.parentBus.reset();
    silent.parentDevice.reset();
    parents.complete(silent);
    EXPECT_EQ(silent.parentBus, link.parentBus) << link.name;
    EXPECT_EQ(silent.parentDevice, link.parentDevice) << link.name;
    cards += link.parentDevice.has_value();
  }
  if (cards == 0) GTEST_SKIP() << "no card in this machine";
}

}  // namespace
}  // namespace ZEB::test
