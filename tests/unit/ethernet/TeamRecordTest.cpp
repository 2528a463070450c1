#include <gmock/gmock.h>

#include "RecordedRecords.h"

namespace ZEB::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(VlanRecord, OnPorts) {
  const auto adapters = adaptersOf("two_cards.json");
  const auto& vlans = adapters[0].ports[0].vlans;
  ASSERT_EQ(vlans.size(), 2u);
  std::string text;
  std::uint16_t id = 0;
  operationalStatus status{};
  EXPECT_EQ(vlans[0].getVLanName(text), 0);
  EXPECT_EQ(text, "eth0.100");
  EXPECT_EQ(vlans[0].getOsDeviceName(text), 0);
  EXPECT_EQ(text, "eth0.100");
  EXPECT_EQ(vlans[0].getVLanId(id), 0);
  EXPECT_EQ(id, 100);
  EXPECT_EQ(vlans[0].getPermanentAddress(text), 0);
  EXPECT_EQ(text, "00:1b:21:00:00:01");
  EXPECT_EQ(vlans[0].getInterfaceStatus(status), 0);
  EXPECT_EQ(status, operationalStatus::OK);
  route_t route;
  EXPECT_EQ(vlans[0].getDefaultGateway(route), 0);
  EXPECT_EQ(route.gateway, "172.16.100.1");
  EthPortAddressOriginEnum origin{};
  EXPECT_EQ(vlans[0].getAddressOrigin(origin), 0);
  EXPECT_EQ(vlans[0].getIPv4Addresses().size(), 1u);
  EXPECT_THAT(vlans[0].getIPv6Addresses(), IsEmpty());
  EXPECT_EQ(vlans[1].getVLanId(id), 0);
  EXPECT_EQ(id, 5) << "stacked on the other";
  EXPECT_EQ(adapters[0].ports[1].vlans.at(0).getInterfaceStatus(status), 0);
  EXPECT_EQ(status, operationalStatus::Error) << "its lower layer is down";
}

TEST(VlanRecord, DefaultConstructed) {
  EthernetVLanDataObject vlan;
  std::string text = "before";
  std::uint16_t id = 999;
  operationalStatus status{999};
  EthPortAddressOriginEnum origin{999};
  route_t route;
  EXPECT_NE(vlan.getOsDeviceName(text), 0);
  EXPECT_NE(vlan.getVLanName(text), 0);
  EXPECT_NE(vlan.getPermanentAddress(text), 0);
  EXPECT_NE(vlan.getVLanId(id), 0);
  EXPECT_NE(vlan.getInterfaceStatus(status), 0);
  EXPECT_NE(vlan.getAddressOrigin(origin), 0);
  EXPECT_NE(vlan.getDefaultGateway(route), 0);
  EXPECT_NE(vlan.refresh(), 0);
  EXPECT_EQ(text, "before");
  EXPECT_EQ(id, 999);
  EXPECT_EQ(static_cast<int>(status), 999);
  EXPECT_EQ(static_cast<int>(origin), 999);
  EXPECT_THAT(vlan.getIPv4Addresses(), IsEmpty());
  EXPECT_THAT(vlan.getIPv6Addresses(), IsEmpty());
}

TEST(TeamRecord, ActiveBackup) {
  const auto teams = teamsOf("teams.json");
  ASSERT_EQ(teams.size(), 3u);
  const EthernetTeamDataObject& team = teams[0];
  std::string text;
  operationalStatus status{};
  EthTeamModeEnum mode{};
  EthTeamRedundancyStatusEnum redundancy{};
  std::uint32_t count = 0;
  unsigned long big = 0;
  EXPECT_EQ(team.getOsDeviceName(text), 0);
  EXPECT_EQ(text, "bond0");
  EXPECT_EQ(team.getPermanentAddress(text), 0);
  EXPECT_EQ(text, "00:1b:21:00:00:01");
  EXPECT_EQ(team.getTeamStatus(status), 0);
  EXPECT_EQ(status, operationalStatus::OK);
  EXPECT_EQ(team.getOperatingMode(mode), 0);
  EXPECT_EQ(static_cast<int>(mode), 1);
  EXPECT_EQ(team.getCurrentOperatingMode(mode), 0);
  EXPECT_EQ(static_cast<int>(mode), 1);
  EXPECT_EQ(team.getRedundancyStatus(redundancy), 0);
  EXPECT_EQ(static_cast<int>(redundancy), 2);
  EXPECT_EQ(team.getNumberOfSlaves(count), 0);
  EXPECT_EQ(count, 2u);
  EXPECT_EQ(team.getSpeed(big), 0);
  EXPECT_EQ(big, 1'000'000'000u);
  EXPECT_EQ(team.getMaxFrameSize(big), 0);
  EXPECT_EQ(big, 1500u);
  EXPECT_EQ(team.getTeamMessage(text), 0);
  EXPECT_EQ(text, "2 of 2 members up");
  EXPECT_THAT(team.getCapabilities(), ElementsAre(4, 5));
  EXPECT_THAT(team.getEnabledCapabilities(), ElementsAre(4));
  EXPECT_EQ(team.vlans.size(), 1u);
  EXPECT_EQ(team.getIPv4Addresses().size(), 1u);
  EXPECT_EQ(team.getIPv6Addresses().size(), 1u);
  EthPortAddressOriginEnum origin{};
  EXPECT_EQ(team.getAddressOrigin(origin), 0);
  EXPECT_EQ(static_cast<int>(origin), 3);
  route_t route;
  EXPECT_EQ(team.getDefaultGateway(route), 0);
  EXPECT_EQ(route.gateway, "192.168.1.1");
}

TEST(TeamRecord, Members) {
  const auto teams = teamsOf("teams.json");
  using Role = EthTeamMemberRoleEnum;
  EXPECT_THAT(teams[0].getSlaves(),
              ElementsAre(EthernetTeamSlave{"eth0", true, Role::Active, operationalStatus::OK},
                          EthernetTeamSlave{"eth1", false, Role::Backup, operationalStatus::OK}));
  EthernetTeamSlave slave;
  EXPECT_EQ(teams[1].findSlaveByName("eth3", slave), 0);
  EXPECT_EQ(slave, (EthernetTeamSlave{"eth3", false, Role::Failed, operationalStatus::Error}));
  EXPECT_NE(teams[1].findSlaveByName("ETH3", slave), 0);
  EXPECT_NE(teams[1].findSlaveByName("eth0", slave), 0);
  EXPECT_EQ(slave.name, "eth3") << "untouched by a search in vain";
  EXPECT_EQ(EthernetTeamDataObject::roleToString(Role::Backup), "Backup");
}

TEST(TeamRecord, DegradedAndBalanced) {
  const auto teams = teamsOf("teams.json");
  operationalStatus status{};
  EthTeamRedundancyStatusEnum redundancy{};
  unsigned long speed = 0;
  EXPECT_EQ(teams[1].getTeamStatus(status), 0);
  EXPECT_EQ(status, operationalStatus::Degraded);
  EXPECT_EQ(teams[1].getRedundancyStatus(redundancy), 0);
  EXPECT_EQ(static_cast<int>(redundancy), 4);
  EXPECT_EQ(teams[1].vlans.size(), 2u);
  EXPECT_EQ(teams[1].vlans[1].getInterfaceStatus(status), 0);
  EXPECT_EQ(status, operationalStatus::Dormant);
  EXPECT_EQ(teams[2].getSpeed(speed), 0);
  EXPECT_EQ(speed, 2'000'000'000u) << "two active members add up";
  EXPECT_THAT(teams[2].getEnabledCapabilities(), ElementsAre(4, 5));
}

TEST(TeamRecord, DefaultConstructed) {
  EthernetTeamDataObject team;
  std::string text = "before";
  operationalStatus status{999};
  EthTeamModeEnum mode{99};
  EthTeamRedundancyStatusEnum redundancy{99};
  std::uint32_t count = 999;
  unsigned long big = 999;
  EthPortAddressOriginEnum origin{999};
  route_t route;
  EthernetTeamSlave slave;
  EXPECT_NE(team.getOsDeviceName(text), 0);
  EXPECT_NE(team.getPermanentAddress(text), 0);
  EXPECT_NE(team.getTeamMessage(text), 0);
  EXPECT_NE(team.getTeamStatus(status), 0);
  EXPECT_NE(team.getOperatingMode(mode), 0);
  EXPECT_NE(team.getCurrentOperatingMode(mode), 0);
  EXPECT_NE(team.getRedundancyStatus(redundancy), 0);
  EXPECT_NE(team.getNumberOfSlaves(count), 0);
  EXPECT_NE(team.getSpeed(big), 0);
  EXPECT_NE(team.getMaxFrameSize(big), 0);
  EXPECT_NE(team.getAddressOrigin(origin), 0);
  EXPECT_NE(team.getDefaultGateway(route), 0);
  EXPECT_NE(team.findSlaveByName("eth0", slave), 0);
  EXPECT_NE(team.refresh(), 0);
  EXPECT_EQ(text, "before");
  EXPECT_EQ(count, 999u);
  EXPECT_EQ(big, 999u);
  EXPECT_THAT(team.getSlaves(), IsEmpty());
  EXPECT_THAT(team.getCapabilities(), IsEmpty());
  EXPECT_THAT(team.getEnabledCapabilities(), IsEmpty());
}

}  // namespace
}  // namespace ZEB::test
