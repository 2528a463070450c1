#include "ClassTest.h"
#include "MemoryHost.h"
#include "classes/port/ZEB_EthernetLANEndpoint.h"

namespace ZEB::test {
namespace {

using ethernet::PortFacts;
using ethernet::TeamFacts;
using ethernet::VlanFacts;

class LANEndpointTest : public ClassTest {
 protected:
  ZEB_EthernetLANEndpoint make(const InterfaceRecord& record) {
    return {recorded.logger, nameSpace, EndpointNumber{3}, record};
  }
  Table read(const InterfaceRecord& record) { return propertiesOf(make(record).makeInstance()); }
};

Table endpoint(const std::string& caption, const std::string& description) {
  return {
      {"CreationClassName", "string \"ZEB_EthernetLANEndpoint\""},
      {"SystemName", "string \"" + hostName() + "\""},
      {"SystemCreationClassName", "string \"ZEB_ComputerSystem\""},
      {"Name", "string \"JXV:ZEB_EthernetLANEndpoint:3\""},
      {"Caption", "string \"" + caption + "\""},
      {"ElementName", "string \"" + caption + "\""},
      {"Description", "string \"" + description + "\""},
      {"MACAddress", "string \"001a2b3c4d5e\""},
      {"ProtocolIFType", "uint16 6"},
      {"HealthState", "uint16 5"},
      {"OperationalStatus", "uint16[] {2}"},
      {"StatusDescriptions", "string[] {\"OK\"}"},
  };
}

Table ofPort() {
  return endpoint("LAN Endpoint(3) for: Gigabit Adapter port 2", "eth0");
}
Table ofTeam() {
  return endpoint("LAN Endpoint(3) for:bond0", "bond0");
}
Table ofVlan() {
  Table table = endpoint("LAN Endpoint(3) for:eth0.100", "eth0.100");
  table.emplace_back("VLANId", "uint16 100");
  table.emplace_back("VLANName", "string \"eth0.100\"");
  return table;
}
TEST_F(LANEndpointTest, OfAPortShowsEverythingThatIsKnown) {
  EXPECT_EQ(read(portOf(everyPortFacts())), ofPort());
}
TEST_F(LANEndpointTest, OfATeamShowsEverythingThatIsKnown) {
  EXPECT_EQ(read(teamOf(everyTeamFacts())), ofTeam());
}
TEST_F(LANEndpointTest, OfAVlanShowsEverythingThatIsKnown) {
  EXPECT_EQ(read(vlanOf(everyVlanFacts())), ofVlan());
}

TEST_F(LANEndpointTest, HasTheKeysOfAnAccessPoint) {
  EXPECT_EQ(keysOf(make(teamOf(everyTeamFacts())).makeObjectPath()),
            (Table{{"CreationClassName", "string \"ZEB_EthernetLANEndpoint\""},
                   {"SystemCreationClassName", "string \"ZEB_ComputerSystem\""},
                   {"SystemName", "string \"" + hostName() + "\""},
                   {"Name", "string \"JXV:ZEB_EthernetLANEndpoint:3\""}}));
}

class LANEndpointOfPort : public LANEndpointTest,
                          public testing::WithParamInterface<UnknownRow<PortFacts>> {};

TEST_P(LANEndpointOfPort, StandsInOrIsLeftOut) {
  PortFacts facts = everyPortFacts();
  GetParam().forget(facts);
  EXPECT_EQ(read(portOf(facts)), edited(ofPort(), GetParam().changes));
}

INSTANTIATE_TEST_SUITE_P(
    Rows, LANEndpointOfPort,
    testing::Values(
        UnknownRow<PortFacts>{"Product", forgetProduct, captioned("LAN Endpoint(3) for: port 2")},
        UnknownRow<PortFacts>{"PortNumber", [](PortFacts& f) { f.number.reset(); },
                              captioned("LAN Endpoint(3) for: Gigabit Adapterunknown ethernet port")},
        UnknownRow<PortFacts>{"ProductAndPortNumber",
                              [](PortFacts& f) {
                                forgetProduct(f);
                                f.number.reset();
                              },
                              captioned("LAN Endpoint(3) for:unknown ethernet port")},
        UnknownRow<PortFacts>{"DeviceName",
                              [](PortFacts& f) { f.link.name.clear(); },
                              {{"Description", "string \"LAN Endpoint 3\""}}},
        UnknownRow<PortFacts>{"PermanentAddress",
                              [](PortFacts& f) { f.link.permanentAddress.reset(); },
                              {{"MACAddress", "string \"\""}}},
        UnknownRow<PortFacts>{
            "LinkType", [](PortFacts& f) { f.link.type.reset(); }, {{"ProtocolIFType", "uint16 0"}}},
        UnknownRow<PortFacts>{"Status", forgetStatus<PortFacts>, kUnknownStatus}),
    kByName);

TEST_F(LANEndpointTest, OfAPortThatIsNotEthernetHasNoProtocolType) {
  PortFacts facts = everyPortFacts();
  facts.link.type = 32;  // InfiniBand
  EXPECT_EQ(read(portOf(facts)), edited(ofPort(), {{"ProtocolIFType", "uint16 0"}}));
}

class LANEndpointOfTeam : public LANEndpointTest,
                          public testing::WithParamInterface<UnknownRow<TeamFacts>> {};

TEST_P(LANEndpointOfTeam, StandsInOrIsLeftOut) {
  TeamFacts facts = everyTeamFacts();
  GetParam().forget(facts);
  EXPECT_EQ(read(teamOf(facts)), edited(ofTeam(), GetParam().changes));
}

INSTANTIATE_TEST_SUITE_P(
    Rows, LANEndpointOfTeam,
    testing::Values(UnknownRow<TeamFacts>{"DeviceName",
                                          [](TeamFacts& f) { f.link.name.clear(); },
                                          {{"Caption", "string \"LAN Endpoint(3) for:\""},
                                           {"ElementName", "string \"LAN Endpoint(3) for:\""},
                                           {"Description", "string \"LAN Endpoint 3\""}}},
                    UnknownRow<TeamFacts>{"Address",
                                          [](TeamFacts& f) { f.link.address.reset(); },
                                          {{"MACAddress", "string \"\""}}},
                    UnknownRow<TeamFacts>{"Status", forgetStatus<TeamFacts>, kUnknownStatus}),
    kByName);

class LANEndpointOfVlan : public LANEndpointTest,
                          public testing::WithParamInterface<UnknownRow<VlanFacts>> {};

TEST_P(LANEndpointOfVlan, StandsInOrIsLeftOut) {
  VlanFacts facts = everyVlanFacts();
  GetParam().forget(facts);
  EXPECT_EQ(read(vlanOf(facts)), edited(ofVlan(), GetParam().changes));
}

INSTANTIATE_TEST_SUITE_P(
    Rows, LANEndpointOfVlan,
    testing::Values(
        // A VLAN is named as its device is.
        UnknownRow<VlanFacts>{"Names",
                              [](VlanFacts& f) { f.link.name.clear(); },
                              {{"Caption", "string \"LAN Endpoint(3) for:\""},
                               {"ElementName", "string \"LAN Endpoint(3) for:\""},
                               {"Description", "string \"LAN Endpoint 3\""},
                               {"VLANName", "string \"unknown\""}}},
        UnknownRow<VlanFacts>{
            "VLANId", [](VlanFacts& f) { f.link.vlanId.reset(); }, {{"VLANId", "uint16 0"}}},
        UnknownRow<VlanFacts>{"NamesAndVLANId",
                              [](VlanFacts& f) {
                                f.link.name.clear();
                                f.link.vlanId.reset();
                              },
                              {{"Caption", "string \"LAN Endpoint(3) for:\""},
                               {"ElementName", "string \"LAN Endpoint(3) for:\""},
                               {"Description", "string \"LAN Endpoint 3\""},
                               {"VLANId", "uint16 0"},
                               {"VLANName", "string \"unknown\""}}},
        UnknownRow<VlanFacts>{
            "Address", [](VlanFacts& f) { f.link.address.reset(); }, {{"MACAddress", "string \"\""}}},
        UnknownRow<VlanFacts>{"Status", forgetStatus<VlanFacts>, kUnknownStatus}),
    kByName);

std::string statusOf(ZEB_EthernetLANEndpoint& endpoint) {
  return textOf(endpoint.makeInstance().getProperty("OperationalStatus"));
}

TEST_F(LANEndpointTest, RemembersNothingAtTheFirstReportAndEscalatesFromThenOn) {
  PortFacts facts = everyPortFacts();
  setStatus(facts.link, operationalStatus::Degraded);
  auto endpoint = make(portOf(facts));
  EXPECT_EQ(statusOf(endpoint), "uint16[] {3}");
  // The remembered status is still 0, so degraded is new; then 6 is remembered, and degraded is new again.
  EXPECT_EQ(statusOf(endpoint), "uint16[] {6}");
  EXPECT_EQ(statusOf(endpoint), "uint16[] {6}");
}

TEST_F(LANEndpointTest, OtherStatusValuesAreReportedAsTheyAre) {
  PortFacts facts = everyPortFacts();
  setStatus(facts.link, operationalStatus::Dormant);
  auto endpoint = make(portOf(facts));
  for (int report = 0; report < 3; ++report) EXPECT_EQ(statusOf(endpoint), "uint16[] {15}");
}

TEST_F(LANEndpointTest, FollowsItsInterface) {
  MemoryHost host;
  host.addPort("eth0");
  auto endpoint = make(host.port(0));
  EXPECT_EQ(statusOf(endpoint), "uint16[] {2}");
  setStatus(host.link("eth0"), operationalStatus::Error);
  EXPECT_EQ(statusOf(endpoint), "uint16[] {6}");
}

}  // namespace
}  // namespace ZEB::test
