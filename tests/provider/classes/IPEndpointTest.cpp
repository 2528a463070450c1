#include "ClassTest.h"
#include "MemoryHost.h"
#include "classes/port/ZEB_IPProtocolEndpoint.h"

namespace ZEB::test {
namespace {

using ethernet::PortFacts;
using ethernet::TeamFacts;
using ethernet::VlanFacts;

class IPEndpointTest : public ClassTest {
 protected:
  ZEB_IPProtocolEndpoint make(IpFamily family, std::uint32_t index, const InterfaceRecord& record) {
    return {recorded.logger, nameSpace, EndpointNumber{9}, AddressIndex{index}, family, record};
  }
  Table read(IpFamily family, std::uint32_t index, const InterfaceRecord& record) {
    return propertiesOf(make(family, index, record).makeInstance());
  }
};

Table endpoint(const Table& address, const std::string& caption, const std::string& description) {
  Table table{
      {"CreationClassName", "string \"ZEB_IPProtocolEndpoint\""},
      {"SystemName", "string \"" + hostName() + "\""},
      {"SystemCreationClassName", "string \"ZEB_ComputerSystem\""},
      {"Name", "string \"JXV:ZEB_IPProtocolEndpoint:9\""},
      {"AddressOrigin", "uint16 3"},
      {"NameFormat",
       "string \"Opaque Key. Unique scoped instance information 'JXV:ZEB_IPProtocolEndpoint:' concatenated "
       "with the class instance id number.\""},
  };
  table.insert(table.end(), address.begin(), address.end());
  const Table rest{
      {"ElementName", "string \"" + caption + "\""},
      {"Caption", "string \"" + caption + "\""},
      {"Description", "string \"" + description + "\""},
      {"HealthState", "uint16 5"},
      {"OperationalStatus", "uint16[] {2}"},
      {"StatusDescriptions", "string[] {\"OK\"}"},
  };
  table.insert(table.end(), rest.begin(), rest.end());
  return table;
}

const Table kSecondIPv4{{"IPv4Address", "string \"192.168.1.11\""},
                        {"SubnetMask", "string \"255.255.255.128\""},
                        {"ProtocolIFType", "uint16 4096"}};
const Table kIPv6{{"IPv6Address", "string \"2001:db8::10\""},
                  {"IPv6AddressType", "uint16 5"},
                  {"IPv6SubnetPrefixLength", "uint16 64"},
                  {"PrefixLength", "uint8 64"},
                  {"ProtocolIFType", "uint16 4097"}};
constexpr const char* kPortCaption = "IP Protocol Endpoint(9) for: port 2 Gigabit Adapter";

TEST_F(IPEndpointTest, OfAPortShowsAnIPv4Address) {
  EXPECT_EQ(read(IpFamily::IPv4, 1, portOf(everyPortFacts())), endpoint(kSecondIPv4, kPortCaption, "eth0"));
}
TEST_F(IPEndpointTest, OfAPortShowsAnIPv6Address) {
  EXPECT_EQ(read(IpFamily::IPv6, 0, portOf(everyPortFacts())), endpoint(kIPv6, kPortCaption, "eth0"));
}
TEST_F(IPEndpointTest, OfATeamShowsAnIPv4Address) {
  EXPECT_EQ(read(IpFamily::IPv4, 1, teamOf(everyTeamFacts())),
            endpoint(kSecondIPv4, "IP Protocol Endpoint(9) for:bond0", "bond0"));
}
TEST_F(IPEndpointTest, OfATeamShowsAnIPv6Address) {
  EXPECT_EQ(read(IpFamily::IPv6, 0, teamOf(everyTeamFacts())),
            endpoint(kIPv6, "IP Protocol Endpoint(9) for:bond0", "bond0"));
}
TEST_F(IPEndpointTest, OfAVlanShowsAnIPv4Address) {
  EXPECT_EQ(read(IpFamily::IPv4, 1, vlanOf(everyVlanFacts())),
            endpoint(kSecondIPv4, "IP Protocol Endpoint(9) for:eth0.100", "eth0.100"));
}
TEST_F(IPEndpointTest, OfAVlanShowsAnIPv6Address) {
  EXPECT_EQ(read(IpFamily::IPv6, 0, vlanOf(everyVlanFacts())),
            endpoint(kIPv6, "IP Protocol Endpoint(9) for:eth0.100", "eth0.100"));
}

TEST_F(IPEndpointTest, HasTheKeysOfAnAccessPoint) {
  EXPECT_EQ(keysOf(make(IpFamily::IPv4, 0, EthernetPort()).makeObjectPath()),
            (Table{{"CreationClassName", "string \"ZEB_IPProtocolEndpoint\""},
                   {"SystemCreationClassName", "string \"ZEB_ComputerSystem\""},
                   {"SystemName", "string \"" + hostName() + "\""},
                   {"Name", "string \"JXV:ZEB_IPProtocolEndpoint:9\""}}));
}

TEST_F(IPEndpointTest, AtOrPastTheEndOfItsListHasNoAddress) {
  const Table none = endpoint({}, kPortCaption, "eth0");
  EXPECT_EQ(read(IpFamily::IPv4, 2, portOf(everyPortFacts())), none);
  EXPECT_EQ(read(IpFamily::IPv4, 3, portOf(everyPortFacts())), none);
  EXPECT_EQ(read(IpFamily::IPv6, 1, portOf(everyPortFacts())), none);
  PortFacts facts = everyPortFacts();
  facts.addresses = {address("10.0.0.1", 8)};
  EXPECT_EQ(read(IpFamily::IPv6, 0, portOf(facts)), none);
}

TEST_F(IPEndpointTest, OfAnInterfaceWithoutAddressesHasNoOrigin) {
  PortFacts facts = everyPortFacts();
  facts.addresses.clear();
  EXPECT_EQ(read(IpFamily::IPv4, 0, portOf(facts)),
            edited(endpoint({}, kPortCaption, "eth0"), {{"AddressOrigin", "uint16 0"}}));
}

class IPEndpointOfPort : public IPEndpointTest, public testing::WithParamInterface<UnknownRow<PortFacts>> {};

TEST_P(IPEndpointOfPort, StandsInOrIsLeftOut) {
  PortFacts facts = everyPortFacts();
  GetParam().forget(facts);
  EXPECT_EQ(read(IpFamily::IPv4, 1, portOf(facts)),
            edited(endpoint(kSecondIPv4, kPortCaption, "eth0"), GetParam().changes));
}

INSTANTIATE_TEST_SUITE_P(
    Rows, IPEndpointOfPort,
    testing::Values(UnknownRow<PortFacts>{"PortNumber", [](PortFacts& f) { f.number.reset(); },
                                          captioned("IP Protocol Endpoint(9) for: Gigabit Adapter")},
                    UnknownRow<PortFacts>{"Product", forgetProduct,
                                          captioned("IP Protocol Endpoint(9) for: port 2")},
                    UnknownRow<PortFacts>{"PortNumberAndProduct",
                                          [](PortFacts& f) {
                                            forgetProduct(f);
                                            f.number.reset();
                                          },
                                          captioned("IP Protocol Endpoint(9) for:")},
                    UnknownRow<PortFacts>{"DeviceName",
                                          [](PortFacts& f) { f.link.name.clear(); },
                                          {{"Description", "string \"Unknown device name\""}}},
                    UnknownRow<PortFacts>{"Status", forgetStatus<PortFacts>, kUnknownStatus}),
    kByName);

TEST_F(IPEndpointTest, OfATeamWithoutANameHasNoDescription) {
  TeamFacts facts = everyTeamFacts();
  facts.link.name.clear();
  EXPECT_EQ(read(IpFamily::IPv4, 1, teamOf(facts)),
            endpoint(kSecondIPv4, "IP Protocol Endpoint(9) for:", ""));
}
TEST_F(IPEndpointTest, OfAVlanWithoutANameHasNoDescription) {
  VlanFacts facts = everyVlanFacts();
  facts.link.name.clear();
  EXPECT_EQ(read(IpFamily::IPv6, 0, vlanOf(facts)), endpoint(kIPv6, "IP Protocol Endpoint(9) for:", ""));
}
TEST_F(IPEndpointTest, OfATeamOrAVlanWithoutAStatusShowsItAsUnknown) {
  TeamFacts team = everyTeamFacts();
  forgetStatus(team);
  EXPECT_EQ(read(IpFamily::IPv6, 0, teamOf(team)),
            edited(endpoint(kIPv6, "IP Protocol Endpoint(9) for:bond0", "bond0"), kUnknownStatus));
  VlanFacts vlan = everyVlanFacts();
  forgetStatus(vlan);
  EXPECT_EQ(read(IpFamily::IPv6, 0, vlanOf(vlan)),
            edited(endpoint(kIPv6, "IP Protocol Endpoint(9) for:eth0.100", "eth0.100"), kUnknownStatus));
}

TEST_F(IPEndpointTest, NeverEscalates) {
  PortFacts facts = everyPortFacts();
  setStatus(facts.link, operationalStatus::Degraded);
  auto endpoint = make(IpFamily::IPv4, 0, portOf(facts));
  for (int report = 0; report < 3; ++report) {
    EXPECT_EQ(textOf(endpoint.makeInstance().getProperty("OperationalStatus")), "uint16[] {3}");
  }
}

TEST_F(IPEndpointTest, IsReadAnewForEveryInstance) {
  MemoryHost host;
  host.addPort("eth0");
  auto own = address("10.0.0.1", 8);
  own.index = host.link("eth0").index;
  host.snapshot().addresses = {own};
  auto endpoint = make(IpFamily::IPv4, 0, host.port(0));
  EXPECT_EQ(textOf(endpoint.makeInstance().getProperty("IPv4Address")), "string \"10.0.0.1\"");
  host.snapshot().addresses.clear();
  EXPECT_EQ(endpoint.makeInstance().findProperty("IPv4Address"), nullptr);
}

}  // namespace
}  // namespace ZEB::test
