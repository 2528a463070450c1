// Cables, plugged cards, bonds, VLANs and addresses as the plug-in serves them, against what ip and sysfs
// say.
#include <gmock/gmock.h>

#include "GuestFixture.h"
#include "ServedModel.h"

namespace ZEB::guest {
namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

const json kOk = json::array({2});
const json kDegraded = json::array({3});
const json kError = json::array({6});
const json kDormant = json::array({15});

using ServedCableTest = GuestFixture;

TEST_F(ServedCableTest, DownPulledAndPutBack) {
  const std::vector<std::string> cards = {"slot3b", "slot4", "slot7", "e1000", "rtl8139"};
  const auto expectStatus = [&](const json& status) {
    ServedModel model(guest());
    for (const std::string& card : cards) {
      EXPECT_EQ(model.port(card)["OperationalStatus"], status) << card;
      EXPECT_EQ(model.endpoint(card)["OperationalStatus"], status) << card;
    }
  };
  const auto setLinks = [&](bool connected) {
    for (const std::string& card : cards) guest().setLink(card, connected);
    for (const std::string& card : cards) ASSERT_TRUE(awaitCarrier(card, connected)) << card;
  };
  expectStatus(kDormant);
  bringUp(cards);
  expectStatus(kOk);
  setLinks(false);
  expectStatus(kError);
  setLinks(true);
  expectStatus(kOk);
}

TEST_F(ServedCableTest, NoSpeedWithoutCarrier) {
  bringUp({"lom1"});
  guest().setLink("lom1", false);
  ASSERT_TRUE(awaitCarrier("lom1", false));
  ServedModel model(guest());
  EXPECT_EQ(model.port("lom1")["Speed"], 0);
  EXPECT_EQ(model.port("lom1")["MaxSpeed"], 1'000'000'000);
  EXPECT_FALSE(model.port("lom1").has("FullDuplex"));
  EXPECT_EQ(model.endpoint("lom1")["OperationalStatus"], kError);
}

using ServedPlugTest = GuestFixture;

TEST_F(ServedPlugTest, ACardComesAndGoes) {
  const std::size_t ports = ServedModel(guest()).all("ZEB_EthernetPort").size();
  guest().plug({.name = "late", .model = kE1000e, .slot = kFreeSlot});
  bringUp({"late"});
  {
    ServedModel model(guest());
    EXPECT_EQ(model.all("ZEB_EthernetPort").size(), ports + 1);
    EXPECT_EQ(model.port("late")["OperationalStatus"], kOk);
    EXPECT_EQ(
        model.only("ZEB_EthernetControllerLocation", "ElementLocationTag", "PCI Express slot 9")["Name"],
        "PCISLOT");
  }
  guest().unplug("late");
  ServedModel model(guest());
  EXPECT_EQ(model.all("ZEB_EthernetPort").size(), ports);
  EXPECT_THROW(model.port("late"), std::exception);
}

struct BondRow {
  std::string name, mode;
  /// As the plug-in has to map the mode.
  int algorithm;
  json otherAlgorithm;
  int typeOfSet;
  json operatingMode;
  /// Of two members with 1 Gbit/s each.
  std::uint64_t speed;
  std::vector<int> roles;
};

void PrintTo(const BondRow& row, std::ostream* stream) {
  *stream << row.mode;
}

const BondRow kBonds[] = {
    {"bond1", "active-backup", 0, nullptr, 2, {2}, 1'000'000'000, {1, 2}},
    {"bond4", "802.3ad", 1, "8023ad", 3, {2}, 2'000'000'000, {1, 1}},
    {"bond6", "balance-alb", 1, "balance-alb", 3, {2, 3}, 2'000'000'000, {1, 1}},
};

class ServedBondTest : public GuestFixture, public testing::WithParamInterface<BondRow> {
 protected:
  /// A bond of both ports of slot 3, up, its partner being a bond too when the mode wants one.
  void makeBond() {
    const std::string& name = GetParam().name;
    if (name == "bond4") {
      guest().must(R"(
        ip -n partner link add bond4 type bond mode 802.3ad miimon 100 lacp_rate fast
        for port in slot3a slot3b; do
          ip -n partner link set $port-peer down
          ip -n partner link set $port-peer master bond4
        done
        ip -n partner link set bond4 up)");
    }
    guest().must("set -e\nip link add " + name + " type bond mode " + GetParam().mode + " miimon 100\n" +
                 (name == "bond4" ? "ip link set bond4 type bond lacp_rate fast\n" : "") +
                 "ip link set slot3a master " + name + "\nip link set slot3b master " + name +
                 "\nip link set " + name + " up\n");
    for (const std::string member : {"slot3a", "slot3b"}) {
      ASSERT_TRUE(awaitCarrier(member, true));
      ASSERT_TRUE(guest().await("grep -qx up /sys/class/net/" + member + "/bonding_slave/mii_status"));
    }
    ASSERT_TRUE(awaitCarrier(name, true));
    if (name == "bond4") {
      // A port is in the aggregate some time before it carries anything.
      ASSERT_TRUE(guest().await("grep -qx 2000 /sys/class/net/bond4/speed", std::chrono::seconds(60)));
    }
  }

  ServedInstance team(ServedModel& model) {
    EXPECT_EQ(model.all("ZEB_EthernetTeam").size(), 1U);
    return model.all("ZEB_EthernetTeam").at(0);
  }

  ServedInstance membership(ServedModel& model, const std::string& card) {
    const std::string port = model.port(card).path;
    const auto& all = model.links("ZEB_EthernetTeamMember");
    const auto found = std::ranges::find(all, json(port), [](const auto& link) { return link["Member"]; });
    return found == all.end() ? throw std::runtime_error(card + " is no member") : *found;
  }

  void expectTeam(ServedModel& model);
  void expectMembers(ServedModel& model);
};

void ServedBondTest::expectTeam(ServedModel& model) {
  const ServedInstance served = team(model);
  EXPECT_EQ(served["LoadBalanceAlgorithm"], GetParam().algorithm);
  EXPECT_EQ(served["OtherLoadBalanceAlgorithm"], GetParam().otherAlgorithm);
  EXPECT_EQ(served["TypeOfSet"], json::array({GetParam().typeOfSet}));
  EXPECT_EQ(served["TeamOperatingMode"], GetParam().operatingMode);
  EXPECT_EQ(served["MaxNumberSupported"], 2);
  EXPECT_EQ(served["RedundancyStatus"], 2);
  EXPECT_EQ(served["GroupOperationalStatus"], kOk);
  EXPECT_EQ(served["Speed"], GetParam().speed);
  EXPECT_EQ(served["ActiveMaximumTransmissionUnit"],
            jsonOf("ip -j link show dev " + GetParam().name).at(0).at("mtu"));
}

void ServedBondTest::expectMembers(ServedModel& model) {
  const std::string path = team(model).path;
  std::vector<int> roles;
  for (const std::string card : {"slot3a", "slot3b"}) {
    const ServedInstance member = membership(model, card);
    EXPECT_EQ(member["Collection"], path);
    EXPECT_EQ(member["MemberOperationalStatus"], kOk);
    roles.push_back(member["Role"]);
  }
  EXPECT_EQ(roles.size(), model.links("ZEB_EthernetTeamMember").size());
  // Which member of an active-backup bond is active is the kernel's choice.
  EXPECT_THAT(roles, testing::UnorderedElementsAreArray(GetParam().roles));
  // A member's own address stays known while the bond lends it another.
  EXPECT_EQ(model.port("slot3b")["PermanentAddress"], withoutColons(guest().addressOf("slot3b")));
}

TEST_P(ServedBondTest, IsATeamThatLosesAMemberAndGetsItBack) {
  makeBond();
  {
    ServedModel model(guest());
    expectTeam(model);
    expectMembers(model);
  }
  guest().setLink("slot3b", false);
  ASSERT_TRUE(guest().await("grep -qx down /sys/class/net/slot3b/bonding_slave/mii_status"));
  {
    ServedModel model(guest());
    EXPECT_EQ(team(model)["RedundancyStatus"], 4);
    EXPECT_EQ(team(model)["GroupOperationalStatus"], kDegraded);
    EXPECT_EQ(membership(model, "slot3b")["Role"], 3);
    EXPECT_EQ(membership(model, "slot3b")["MemberOperationalStatus"], kDegraded);
    EXPECT_EQ(membership(model, "slot3a")["Role"], 1);
    EXPECT_EQ(model.endpoint(GetParam().name)["OperationalStatus"], kDegraded);
  }
  guest().setLink("slot3b", true);
  ASSERT_TRUE(guest().await("grep -qx up /sys/class/net/slot3b/bonding_slave/mii_status"));
  ServedModel model(guest());
  EXPECT_EQ(team(model)["RedundancyStatus"], 2);
  EXPECT_EQ(team(model)["GroupOperationalStatus"], kOk);
}

INSTANTIATE_TEST_SUITE_P(Modes, ServedBondTest, testing::ValuesIn(kBonds),
                         [](const auto& row) { return row.param.name; });

using ServedVlanTest = GuestFixture;

TEST_F(ServedVlanTest, OnPortAndBond) {
  guest().must(R"(set -e
    ip link add bond1 type bond mode active-backup miimon 100
    ip link set slot3a master bond1; ip link set slot3b master bond1; ip link set bond1 up
    ip link add link bond1 name bond1.20 type vlan id 20; ip link set bond1.20 up
    ip link set lom1 up
    ip link add link lom1 name lom1.10 type vlan id 10; ip link set lom1.10 up)");
  ASSERT_TRUE(awaitCarrier("bond1.20", true));
  ASSERT_TRUE(awaitCarrier("lom1.10", true));
  ServedModel model(guest());
  const ServedInstance& onPort = model.endpoint("lom1.10");
  EXPECT_EQ(onPort["VLANId"], 10);
  EXPECT_EQ(onPort["VLANName"], "lom1.10");
  EXPECT_EQ(onPort["OperationalStatus"], kOk);
  const ServedInstance& onBond = model.endpoint("bond1.20");
  EXPECT_EQ(onBond["VLANId"], 20);
  EXPECT_EQ(onBond["MACAddress"], withoutColons(jsonOf("ip -j link show dev bond1.20").at(0).at("address")));

  const auto above = [&](const std::string& association, const std::string& path) {
    std::vector<std::string> names;
    for (const auto& end :
         model.across(association, "Antecedent", path, "Dependent", "ZEB_EthernetLANEndpoint")) {
      names.push_back(end["Description"]);
    }
    return names;
  };
  EXPECT_THAT(above("ZEB_EthernetPortToLANEndpoint", model.port("lom1").path),
              ElementsAre("lom1", "lom1.10"));
  EXPECT_THAT(above("ZEB_EthernetTeamToLANEndpoint", model.all("ZEB_EthernetTeam").at(0).path),
              ElementsAre("bond1", "bond1.20"));
}

TEST_F(ServedVlanTest, FollowsItsPort) {
  guest().must(R"(set -e
    ip link set lom1 up
    ip link add link lom1 name lom1.10 type vlan id 10; ip link set lom1.10 up)");
  ASSERT_TRUE(awaitCarrier("lom1.10", true));
  guest().setLink("lom1", false);
  ASSERT_TRUE(guest().await("grep -qx lowerlayerdown /sys/class/net/lom1.10/operstate"));
  EXPECT_EQ(ServedModel(guest()).endpoint("lom1.10")["OperationalStatus"], kError);
}

using ServedAddressTest = GuestFixture;

/// The addresses of one family that endpoints of an interface have.
std::vector<std::string> addresses(ServedModel& model, const std::string& interface,
                                   const std::string& property) {
  std::vector<std::string> found;
  for (const ServedInstance& endpoint : model.all("ZEB_IPProtocolEndpoint")) {
    if (endpoint["Description"] == interface && endpoint.has(property)) found.push_back(endpoint[property]);
  }
  return found;
}

/// The same as ip tells them.
std::vector<std::string> kernelAddresses(const json& links, const std::string& family) {
  std::vector<std::string> found;
  for (const json& address : links.at(0).at("addr_info")) {
    if (address.at("family") == family) found.push_back(address.at("local"));
  }
  return found;
}

TEST_F(ServedAddressTest, BothFamilies) {
  bringUp({"lom1"});
  guest().must(R"(set -e
    ip address add 192.0.2.10/24 dev lom1
    ip address add 198.51.100.7/28 dev lom1
    ip address add 2001:db8::10/56 dev lom1 nodad)");
  ServedModel model(guest());
  const json kernel = jsonOf("ip -j address show dev lom1");
  EXPECT_THAT(addresses(model, "lom1", "IPv4Address"), ElementsAre("192.0.2.10", "198.51.100.7"));
  EXPECT_EQ(addresses(model, "lom1", "IPv4Address"), kernelAddresses(kernel, "inet"));
  EXPECT_EQ(addresses(model, "lom1", "IPv6Address"), kernelAddresses(kernel, "inet6"));

  const ServedInstance& second = model.only("ZEB_IPProtocolEndpoint", "IPv4Address", "198.51.100.7");
  EXPECT_EQ(second["SubnetMask"], "255.255.255.240");
  EXPECT_EQ(second["AddressOrigin"], 3);
  EXPECT_EQ(second["ProtocolIFType"], 4096);
  const ServedInstance& sixth = model.only("ZEB_IPProtocolEndpoint", "IPv6Address", "2001:db8::10");
  EXPECT_EQ(sixth["IPv6SubnetPrefixLength"], 56);
  EXPECT_EQ(sixth["ProtocolIFType"], 4097);
  const auto below = model.across("ZEB_IPBindsToEthernetLANEndpoint", "Dependent", sixth.path, "Antecedent",
                                  "ZEB_EthernetLANEndpoint");
  ASSERT_EQ(below.size(), 1U);
  EXPECT_EQ(below[0]["Description"], "lom1");
}

TEST_F(ServedAddressTest, APortThatIsDownKeepsOnlyItsIpv6Addresses) {
  guest().must("ip address add 192.0.2.10/24 dev lom1");
  ServedModel model(guest());
  EXPECT_THAT(addresses(model, "lom1", "IPv4Address"), IsEmpty());
}

TEST_F(ServedAddressTest, Gateways) {
  bringUp({"lom1", "e1000"});
  guest().must(R"(set -e
    ip address add 192.0.2.10/24 dev lom1
    ip route add default via 192.0.2.2 metric 300
    ip route add default via 192.0.2.1 metric 100
    ip address add 2001:db8:1::10/64 dev e1000 nodad
    ip -6 route add default via 2001:db8:1::1 metric 200)");
  ServedModel model(guest());
  const auto gateway = [&](const std::string& interface) {
    for (const ServedInstance& served : model.all("ZEB_EthernetRemoteServiceAccessPoint")) {
      if (served["Name"] == "RemoteServiceAccessPoint: Gateway for " + interface) return served;
    }
    throw std::runtime_error("no gateway for " + interface);
  };
  EXPECT_EQ(gateway("lom1")["InfoFormat"], 3);
  EXPECT_EQ(gateway("lom1")["AccessInfo"], "192.0.2.1 Netmask: 255.255.255.0");
  EXPECT_EQ(gateway("lom1")["AccessContext"], 2);
  EXPECT_EQ(gateway("e1000")["InfoFormat"], 4);
  EXPECT_EQ(gateway("e1000")["AccessInfo"], "2001:db8:1::1/64");
}

TEST_F(ServedAddressTest, OnBondAndVlan) {
  guest().must(R"(set -e
    ip link add bond1 type bond mode active-backup miimon 100
    ip link set slot3a master bond1; ip link set slot3b master bond1; ip link set bond1 up
    ip link add link bond1 name bond1.20 type vlan id 20; ip link set bond1.20 up
    ip address add 192.0.2.20/24 dev bond1
    ip address add 198.51.100.20/24 dev bond1.20)");
  ASSERT_TRUE(awaitCarrier("bond1.20", true));
  for (const std::string member : {"slot3a", "slot3b"}) {
    ASSERT_TRUE(guest().await("grep -qx up /sys/class/net/" + member + "/bonding_slave/mii_status"));
  }
  ServedModel model(guest());
  EXPECT_THAT(addresses(model, "bond1", "IPv4Address"), ElementsAre("192.0.2.20"));
  EXPECT_THAT(addresses(model, "bond1.20", "IPv4Address"), ElementsAre("198.51.100.20"));
  EXPECT_THAT(addresses(model, "slot3a", "IPv4Address"), IsEmpty());
}

}  // namespace
}  // namespace ZEB::guest
