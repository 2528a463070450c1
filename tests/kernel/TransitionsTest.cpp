#include <gmock/gmock.h>

#include "Namespace.h"
#include "ethernet/EthernetMRA.h"
#include "ethernet/RefreshScope.h"
#include "ethernet/Sources.h"

namespace ZEB::test {
namespace {

using namespace ethernet;

EthernetPort portNamed(EthernetMRA& source, const std::string& wanted) {
  EthernetAdapterDataObject adapter;
  for (int rc = source.getFirstData(false, adapter); rc == 0; rc = source.getNextData(false, adapter)) {
    std::string name;
    if (adapter.ports.at(0).getOsDeviceName(name) == 0 && name == wanted) return adapter.ports[0];
  }
  ADD_FAILURE() << "no port " << wanted;
  return {};
}

void walk(EthernetMRA& source) {
  EthernetAdapterDataObject adapter;
  for (int rc = source.getFirstData(false, adapter); rc == 0; rc = source.getNextData(false, adapter)) {
  }
}

bool refreshedStatusBecomes(EthernetPort& port, operationalStatus wanted) {
  return eventually([&] {
    operationalStatus status{};
    return port.refresh() == 0 && port.getPortStatus(status) == 0 && status == wanted;
  });
}

TEST(KernelTransitions, StatusFollowsTheLink) {
  IN_NAMESPACE([] {
    makePairs(1);
    EthernetMRA source(kernelInventory(true));
    EthernetPort port = portNamed(source, "a0");
    EXPECT_TRUE(refreshedStatusBecomes(port, operationalStatus::OK));
    ip("link set b0 down");
    EXPECT_TRUE(refreshedStatusBecomes(port, operationalStatus::Error));
    ip("link set a0 down");
    EXPECT_TRUE(refreshedStatusBecomes(port, operationalStatus::Dormant));
    ip("link set b0 up");
    ip("link set a0 up");
    EXPECT_TRUE(refreshedStatusBecomes(port, operationalStatus::OK));
    ip("link del a0");
    EXPECT_NE(port.refresh(), 0);
    operationalStatus status{};
    EXPECT_NE(port.getPortStatus(status), 0);
  });
}

TEST(KernelTransitions, PulledCableIsAnEventAndTheSameStateIsNone) {
  IN_NAMESPACE([] {
    makePairs(2);
    EthernetMRA source(kernelInventory(true));
    walk(source);
    const auto settle = [&] {
      EXPECT_TRUE(eventually([&] {
        const bool quiet = source.updateAll() == 0 && !source.ethEventDetected();
        source.eventsProcessed();
        return quiet;
      }));
    };
    settle();
    ip("link set b1 down");
    EXPECT_TRUE(eventually([&] { return source.updateAll() == 0 && source.ethEventDetected(); }));
    settle();
    for (int i = 0; i < 20; ++i) ip("link set a1 mtu " + std::to_string(1400 + i));
    EXPECT_EQ(source.updateAll(), 0);
    EXPECT_FALSE(source.ethEventDetected()) << "the kernel announced the link, but not another state of it";
  });
}

TEST(KernelTransitions, ReloadSeesPortsAndLayers) {
  IN_NAMESPACE([] {
    makePairs(1);
    EthernetMRA source(kernelInventory(true));
    const auto settle = [&] {
      EXPECT_TRUE(eventually([&] {
        walk(source);
        return !source.forceReload();
      }));
    };
    settle();
    ip("addr add 10.1.2.3/24 dev a0");
    EXPECT_TRUE(source.forceReload());
    settle();
    ip("route add default via 10.1.2.1");
    EXPECT_TRUE(source.forceReload());
    settle();
    ip("link add c0 type veth peer name d0");
    EXPECT_TRUE(source.forceReload());
    settle();
    ip("link del c0");
    EXPECT_TRUE(source.forceReload());
    settle();
    ip("link set a0 down");
    ip("link set a0 name renamed");
    EXPECT_TRUE(source.forceReload());
  });
}

TEST(KernelTransitions, PortThatVanishesDropsOnlyItself) {
  IN_NAMESPACE([] {
    makePairs(2);
    EthernetMRA source(kernelInventory(true));
    EthernetPort gone = portNamed(source, "a0");
    EthernetPort stays = portNamed(source, "a1");
    ip("link del a0");
    RefreshScope scope;
    EXPECT_NE(gone.refresh(), 0);
    EXPECT_EQ(stays.refresh(), 0);
    source.forceReload();
    EXPECT_NE(gone.refresh(), 0);
    EXPECT_EQ(stays.refresh(), 0);
  });
}

}  // namespace
}  // namespace ZEB::test
