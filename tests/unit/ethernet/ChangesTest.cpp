#include <gmock/gmock.h>

#include "SnapshotBuilder.h"
#include "model/Changes.h"

namespace ZEB::ethernet::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// One card of two ports, a team of both, a VLAN on a port and one on the team, addresses and a gateway.
HostSnapshot host() {
  HostSnapshot snapshot;
  snapshot.links = {pciPort(2, "eth0", "0000:01:00.0"),
                    memberOf(pciPort(3, "eth1", "0000:01:00.1"), 10),
                    memberOf(pciPort(4, "eth2", "0000:01:00.2"), 10, 1),
                    bondLink(10, "bond0"),
                    vlanLink(20, "eth0.7", 2, 7),
                    vlanLink(21, "bond0.8", 10, 8)};
  snapshot.addresses = {addressOn(2, "10.0.0.2"), addressOn(10, "10.1.0.2"), addressOn(20, "10.2.0.2"),
                        addressOn(21, "10.3.0.2")};
  snapshot.routes = {{2, *parseIpAddress("10.0.0.1"), 0, 254}, {10, *parseIpAddress("10.1.0.1"), 5, 254}};
  return snapshot;
}

/// What is found different after `edit`.
struct Found {
  bool adapters, teams, portEvent, teamEvent;
  bool teamNames;
  friend bool operator==(const Found&, const Found&) = default;
};

Found after(const std::function<void(HostSnapshot&)>& edit) {
  HostSnapshot changed = host();
  edit(changed);
  const auto before = buildModel(host(), false);
  const auto now = buildModel(changed, false);
  return {adaptersDiffer(before.get(), *now), teamsDiffer(before.get(), *now), portTransition(*before, *now),
          teamTransition(*before, *now),
          !teamsAdded(before.get(), now.get()).empty() || !teamsAdded(now.get(), before.get()).empty()};
}

constexpr Found kNothing{false, false, false, false, false};

TEST(Changes, Nothing) {
  EXPECT_EQ(after([](HostSnapshot&) {}), kNothing);
  EXPECT_EQ(after([](HostSnapshot& s) { s.links[3].statistics = LinkStatistics{1, 2, 3, 4}; }), kNothing);
  EXPECT_EQ(after([](HostSnapshot& s) { s.addresses[0].flags = 0; }), kNothing);
  EXPECT_EQ(after([](HostSnapshot& s) { s.links[0].mtu = 9000; }), kNothing);
}

TEST(Changes, Adapters) {
  EXPECT_TRUE(after([](HostSnapshot& s) { s.links.push_back(pciPort(9, "eth9", "0000:02:00.0")); }).adapters);
  EXPECT_TRUE(after([](HostSnapshot& s) { s.links.erase(s.links.begin()); }).adapters);
  EXPECT_TRUE(after([](HostSnapshot& s) { s.links[0].name = "lan0"; }).adapters);
  EXPECT_TRUE(after([](HostSnapshot& s) { s.links[0] = pciPort(2, "eth0", "0000:02:00.0"); }).adapters);
  EXPECT_TRUE(adaptersDiffer(nullptr, *buildModel(host(), false)));
  EXPECT_FALSE(adaptersDiffer(nullptr, *buildModel({}, false)));
}

TEST(Changes, WhatHangsOnPorts) {
  Found layers = kNothing;
  layers.adapters = true;
  EXPECT_EQ(after([](HostSnapshot& s) { s.addresses.push_back(addressOn(2, "10.0.0.3")); }), layers);
  EXPECT_EQ(after([](HostSnapshot& s) { s.addresses[0].prefixLength = 16; }), layers);
  EXPECT_EQ(after([](HostSnapshot& s) { s.routes[0].gateway = *parseIpAddress("10.0.0.9"); }), layers);
  EXPECT_EQ(after([](HostSnapshot& s) { s.links.push_back(vlanLink(22, "eth0.9", 2, 9)); }), layers);
  EXPECT_EQ(after([](HostSnapshot& s) { s.links[4].vlanId = 8; }), layers);
  EXPECT_EQ(after([](HostSnapshot& s) { s.addresses[2].address = *parseIpAddress("10.2.0.9"); }), layers);
  EXPECT_EQ(after([](HostSnapshot& s) { s.links[4].operState = IF_OPER_LOWERLAYERDOWN; }), layers)
      << "its IPv4 address goes out of use";
  EXPECT_EQ(after([](HostSnapshot& s) { s.links[0].address = HardwareAddress(); }), layers)
      << "it gets a LAN endpoint";
  EXPECT_EQ(after([](HostSnapshot& s) { s.links[0].statistics = LinkStatistics(); }), layers)
      << "it gets statistics";
  EXPECT_EQ(after([](HostSnapshot& s) {
              auto hardware = *s.links[0].hardware;
              hardware.partNumber = "P-1";
              s.links[0].hardware = std::make_shared<HardwareFacts>(hardware);
            }),
            layers);
}

TEST(Changes, TheSameHardwareReadAgainIsNoChange) {
  EXPECT_EQ(after([](HostSnapshot& s) {
              s.links[0].hardware = std::make_shared<HardwareFacts>(*s.links[0].hardware);
            }),
            kNothing);
}

TEST(Changes, WhatHangsOnTeams) {
  Found layers = kNothing;
  layers.teams = true;
  EXPECT_EQ(after([](HostSnapshot& s) { s.addresses.erase(s.addresses.begin() + 1); }), layers);
  EXPECT_EQ(after([](HostSnapshot& s) { s.routes.pop_back(); }), layers);
  EXPECT_EQ(after([](HostSnapshot& s) { s.links[5].name = "storage"; }), layers);
}

TEST(Changes, PortEvent) {
  Found event = kNothing;
  event.portEvent = true;
  EXPECT_EQ(after([](HostSnapshot& s) { carrier(s.links[0], false); }), event);
  EXPECT_EQ(after([](HostSnapshot& s) { s.links[0].operState = IF_OPER_TESTING; }), event);
}

TEST(Changes, ACarrierThatComesToAPortThatIsOffIsAnEvent) {
  HostSnapshot snapshot = host();
  snapshot.links[0].flags = 0;
  snapshot.links[0].carrier = false;
  const auto before = buildModel(snapshot, false);
  snapshot.links[0].carrier = true;
  EXPECT_TRUE(portTransition(*before, *buildModel(snapshot, false)));
}

TEST(Changes, AddressesGoOutOfUseWithThePort) {
  Found both = kNothing;
  both.portEvent = both.adapters = true;
  EXPECT_EQ(after([](HostSnapshot& s) { s.links[0].flags = 0; }), both);
}

TEST(Changes, TeamEvent) {
  Found member = kNothing;
  member.portEvent = member.teamEvent = member.teams = true;
  EXPECT_EQ(after([](HostSnapshot& s) { carrier(s.links[1], false); }), member);
  Found shown = kNothing;
  shown.teamEvent = shown.teams = true;
  EXPECT_EQ(after([](HostSnapshot& s) { s.links[1].bondMember->state = 1; }), shown) << "its role";
  EXPECT_EQ(after([](HostSnapshot& s) {
              s.links[2].bondMember.reset();
              s.links[2].masterIndex.reset();
            }),
            shown)
      << "membership";
}

TEST(Changes, OneStateIsWhatCountersAloneTellApart) {
  const auto isOneState = [](const std::function<void(HostSnapshot&)>& edit) {
    HostSnapshot first = host(), second = host();
    for (HostSnapshot* const snapshot : {&first, &second}) {
      snapshot->links[0].statistics = LinkStatistics{1, 2, 3, 4};
      snapshot->links[0].driver = std::make_shared<DriverFacts>(DriverFacts{"net", "1", {}});
    }
    edit(second);
    return sameButCounters(*buildModel(first, false), *buildModel(second, false));
  };
  EXPECT_TRUE(isOneState([](HostSnapshot&) {})) << "what is read again is not another";
  EXPECT_TRUE(isOneState([](HostSnapshot& s) { s.links[0].statistics->rxBytes = 5; }));
  EXPECT_FALSE(isOneState([](HostSnapshot& s) { s.links[0].statistics.reset(); }));
  for (const std::size_t link : {0u, 3u, 4u}) {
    EXPECT_FALSE(isOneState([&](HostSnapshot& s) { s.links[link].mtu = 9000; })) << link;
  }
  EXPECT_FALSE(isOneState([](HostSnapshot& s) {
    s.links[0].driver = std::make_shared<DriverFacts>(DriverFacts{"net", "2", {}});
  }));
  const auto hardwareOf = [](const std::string& partNumber) {
    return [partNumber](HostSnapshot& s) {
      HardwareFacts again = *s.links[0].hardware;
      if (!partNumber.empty()) again.partNumber = partNumber;
      s.links[0].hardware = std::make_shared<HardwareFacts>(again);
    };
  };
  EXPECT_TRUE(isOneState(hardwareOf("")));
  EXPECT_FALSE(isOneState(hardwareOf("another")));
}

TEST(Changes, TeamNames) {
  const auto before = buildModel(host(), false);
  HostSnapshot changed = host();
  changed.links[3].name = "bond9";
  changed.links.push_back(bondLink(11, "bond1"));
  const auto now = buildModel(changed, false);
  EXPECT_THAT(teamsAdded(before.get(), now.get()), ElementsAre("bond9", "bond1"));
  EXPECT_THAT(teamsAdded(now.get(), before.get()), ElementsAre("bond0"));
  EXPECT_THAT(teamsAdded(nullptr, before.get()), ElementsAre("bond0"));
  EXPECT_THAT(teamsAdded(before.get(), nullptr), IsEmpty());
}

TEST(Changes, ATeamMadeAnewUnderItsNameIsAnother) {
  const auto before = buildModel(host(), false);
  HostSnapshot changed = host();
  changed.links[3].index = 30;
  changed.links[1].masterIndex = changed.links[2].masterIndex = 30;
  carrier(changed.links[1], false);
  const auto now = buildModel(changed, false);
  EXPECT_THAT(teamsAdded(before.get(), now.get()), ElementsAre("bond0"));
  EXPECT_THAT(teamsAdded(now.get(), before.get()), ElementsAre("bond0"));
  EXPECT_FALSE(teamTransition(*before, *now)) << "nothing is known of it from before";
}

}  // namespace
}  // namespace ZEB::ethernet::test
