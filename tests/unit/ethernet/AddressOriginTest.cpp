#include <gtest/gtest.h>

#include "FakeSource.h"
#include "SnapshotBuilder.h"
#include "ethernet/EthernetMRA.h"
#include "ethernet/EthernetTeamMRA.h"
#include "records/Inventory.h"

// Where teams and VLANs have their addresses from.

namespace ZEB::ethernet::test {
namespace {

using Origin = EthPortAddressOriginEnum;

constexpr std::uint32_t kLeased = 0;  // an address without IFA_F_PERMANENT

AddressFacts leased(std::uint32_t index, const char* text, std::uint8_t prefix) {
  AddressFacts facts = addressOn(index, text, prefix);
  facts.flags = kLeased;
  return facts;
}

class AddressOrigin : public testing::Test {
 protected:
  AddressOrigin() {
    host.snapshot.links = {
        pciPort(2, "eth0", "0000:01:00.0"), bondLink(3, "bond0"),         bondLink(4, "bond1"),
        vlanLink(5, "eth0.5", 2, 5),        vlanLink(6, "bond0.6", 3, 6), vlanLink(7, "bond0.7", 3, 7)};
    host.snapshot.addresses = {leased(3, "10.0.0.3", 24), addressOn(4, "10.0.0.4", 24),
                               addressOn(5, "169.254.1.1", 16), leased(6, "2001:db8::6", 64)};
  }

  template <class Record>
  static Origin originOf(const Record& record) {
    Origin origin{999};
    record.getAddressOrigin(origin);
    return origin;
  }

  FakeSource::Host host;
  std::shared_ptr<Inventory> inventory =
      std::make_shared<Inventory>(std::make_unique<FakeSource>(host), false);
};

TEST_F(AddressOrigin, OfTeamsAndTheirVlans) {
  EthernetTeamMRA source(inventory);
  EthernetTeamDataObject first, second;
  ASSERT_EQ(source.getFirstData(false, first), 0);
  ASSERT_EQ(source.getNextData(false, second), 0);
  EXPECT_EQ(originOf(first), Origin::Dhcp);
  EXPECT_EQ(originOf(second), Origin::Static);
  ASSERT_EQ(first.vlans.size(), 2u);
  EXPECT_EQ(originOf(first.vlans[0]), Origin::IPv6AutoConfig);
  EXPECT_EQ(originOf(first.vlans[1]), Origin{999}) << "without an address there is nothing to tell";

  host.edit([](HostSnapshot& snapshot) { snapshot.addresses[0] = addressOn(3, "10.0.0.3", 24); });
  EXPECT_EQ(first.refresh(), 0);
  EXPECT_EQ(originOf(first), Origin::Static);
}

TEST_F(AddressOrigin, OfAVlanOnAPort) {
  EthernetMRA source(inventory);
  EthernetAdapterDataObject adapter;
  ASSERT_EQ(source.getFirstData(false, adapter), 0);
  ASSERT_EQ(adapter.ports.at(0).vlans.size(), 1u);
  EthernetVLanDataObject vlan = adapter.ports[0].vlans[0];
  EXPECT_EQ(originOf(vlan), Origin::IPv4LinkLocal);
  EXPECT_EQ(originOf(adapter.ports[0]), Origin{999});

  host.edit([](HostSnapshot& snapshot) { snapshot.addresses[2] = leased(5, "2001:db8::5", 128); });
  EXPECT_EQ(vlan.refresh(), 0);
  EXPECT_EQ(originOf(vlan), Origin::Dhcpv6);
}

}  // namespace
}  // namespace ZEB::ethernet::test
