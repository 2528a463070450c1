#pragma once

#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <vector>

#include "FakeSource.h"
#include "SnapshotBuilder.h"
#include "ethernet/EthernetMRA.h"
#include "ethernet/EthernetTeamMRA.h"
#include "records/Inventory.h"

namespace ZEB::ethernet::test {

/// Two ports in a team, a third on its own with a VLAN, and both data sources over them.
class InventoryTest : public testing::Test {
 protected:
  InventoryTest() {
    host.snapshot.links = {
        memberOf(pciPort(2, "eth0", "0000:01:00.0"), 10), memberOf(pciPort(3, "eth1", "0000:01:00.1"), 10, 1),
        pciPort(4, "eth2", "0000:02:00.0"), bondLink(10, "bond0"), vlanLink(20, "eth2.7", 4, 7)};
    host.snapshot.addresses = {addressOn(4, "10.0.0.4")};
  }

  /// Walks both sources to their ends, as a build does.
  void build() {
    ports.clear();
    teams.clear();
    EthernetAdapterDataObject adapter;
    EthernetTeamDataObject team;
    for (int rc = teamSource.getFirstData(false, team); rc == 0; rc = teamSource.getNextData(false, team)) {
      teams.push_back(team);
    }
    for (int rc = portSource.getFirstData(false, adapter); rc == 0;
         rc = portSource.getNextData(false, adapter)) {
      ports.insert(ports.end(), adapter.ports.begin(), adapter.ports.end());
    }
  }

  bool reloadTeams() { return teamSource.forceReload(added, removed); }

  operationalStatus statusOf(const EthernetPort& port) {
    operationalStatus status{};
    return port.getPortStatus(status) == 0 ? status : operationalStatus::Unknown;
  }

  void unplug(std::uint32_t index) {
    host.edit([&](HostSnapshot& s) {
      for (LinkFacts& link : s.links) {
        if (link.index == index) carrier(link, false);
      }
    });
  }

  FakeSource::Host host;
  std::shared_ptr<Inventory> inventory =
      std::make_shared<Inventory>(std::make_unique<FakeSource>(host), false);
  EthernetMRA portSource{inventory};
  EthernetTeamMRA teamSource{inventory};
  std::vector<EthernetPort> ports;
  std::vector<EthernetTeamDataObject> teams;
  std::vector<std::string> added, removed;
};

}  // namespace ZEB::ethernet::test
