#include <gmock/gmock.h>

#include "SnapshotBuilder.h"
#include "recorded/Anonymizer.h"
#include "recorded/SnapshotReader.h"
#include "recorded/SnapshotWriter.h"
#include "support/Content.h"

namespace ZEB::ethernet::test {
namespace {

using testing::HasSubstr;

std::string wrap(const std::string& rest) {
  return R"({"format": "zeb-host-snapshot", "version": 1)" + (rest.empty() ? "" : ", " + rest) + "}";
}
std::string linkWith(const std::string& rest) {
  return wrap(R"("links": [{"index": 2, "name": "eth0", )" + rest + "}]");
}

/// Why a text is refused; empty when it is not.
std::string problem(const std::string& text) {
  const auto moments = readSnapshots(text);
  return moments ? "" : moments.failure().what;
}

HostSnapshot only(const std::string& text) {
  auto moments = readSnapshots(text);
  EXPECT_TRUE(moments) << (moments ? "" : moments.failure().what);
  EXPECT_EQ(moments->size(), 1u);
  return std::move(moments->front().snapshot);
}

std::string recorded(const std::string& name) {
  return ZEB::test::contentOf(std::string(ZEB_SNAPSHOTS) + "/" + name);
}

TEST(SnapshotReader, ReadsEveryFactOfALink) {
  const HostSnapshot host = only(recorded("one_port.json"));
  ASSERT_EQ(host.links.size(), 1u);
  const LinkFacts& link = host.links[0];
  EXPECT_EQ(host.sampleTime, 1700000000);
  EXPECT_EQ(link.flags, 0x11043u);
  EXPECT_EQ(link.operState, 6);
  EXPECT_EQ(link.mtu, 9000u);
  EXPECT_EQ(link.statistics, (LinkStatistics{11, 22, 3333, 4444}));
  EXPECT_EQ(link.ethtool.supported->count(), 7u);
  EXPECT_EQ(link.ethtool.mac, (MacStatistics{1, 2, 3, 4, 5, 6, 7, 8, 9}));
  EXPECT_EQ(link.hardware->physicalFunction, (PciAddress{0, 3, 0, 0}));
  EXPECT_EQ(link.hardware->slotKind, SlotKind::PciExpress);
  EXPECT_EQ(link.driver->firmwareVersion, "2.1-0");
  EXPECT_EQ(toText(host.addresses.at(1).address), "2001:db8::10");
  EXPECT_EQ(host.addresses.at(2).protocol, 3);
  EXPECT_EQ(toText(host.routes.at(0).gateway), "192.168.1.1");
}

TEST(SnapshotReader, WhatIsMissingOrNullIsUnknown) {
  const HostSnapshot host = only(linkWith(R"("mtu": null, "ethtool": {})"));
  EXPECT_FALSE(host.links[0].mtu);
  EXPECT_FALSE(host.links[0].hardware || host.links[0].driver || host.links[0].ethtool.supported);
  EXPECT_TRUE(only(wrap("")).links.empty());
}

TEST(SnapshotReader, RulesAreReadAndWritten) {
  const auto host =
      only(wrap(R"("rules": [{"family": "ipv4", "table": 254}, {"family": "ipv6", "table": 0}])"));
  const std::vector<RuleFacts> expected = {{IpFamily::V4, 254}, {IpFamily::V6, RuleFacts::kTableOfVrf}};
  EXPECT_EQ(host.rules, expected);
  EXPECT_EQ(only(writeSnapshot(host)).rules, expected);
  EXPECT_TRUE(only(wrap(R"("routes": [])")).rules.empty()) << "files from before there were any";
  EXPECT_EQ(problem(wrap(R"("rules": [{"family": 4}])")), "rules[0].family: expected \"ipv4\" or \"ipv6\"");
}

TEST(SnapshotReader, UnknownKeysArePassedOver) {
  EXPECT_EQ(problem(linkWith(R"("colour": "red", "ethtool": {"depth": [1]})")), "");
  EXPECT_EQ(problem(wrap(R"("notes": {"a": 1})")), "");
}

struct BadCase {
  const char* text;
  const char* expected;
};

TEST(SnapshotReader, WrongKindsNameTheirPlace) {
  const BadCase cases[] = {
      {R"("mtu": "big")", "links[0].mtu: expected a whole number from 0 to 4294967295"},
      {R"("mtu": -1)", "links[0].mtu: expected a whole number from 0 to 4294967295"},
      {R"("mtu": 1.5)", "links[0].mtu: expected a whole number from 0 to 4294967295"},
      {R"("type": 65536)", "links[0].type: expected a whole number from 0 to 65535"},
      {R"("vlanId": 99999999999999999999)", "links[0].vlanId: expected a whole number from 0 to 65535"},
      {R"("carrier": 1)", "links[0].carrier: expected true or false"},
      {R"("kind": 5)", "links[0].kind: expected a text"},
      {R"("address": "00:1a")", "links[0].address: expected an address such as \"00:1a:2b:3c:4d:5e\""},
      {R"("flags": 3)", "links[0].flags: expected a list of flags"},
      {R"("flags": ["SIDEWAYS"])", "links[0].flags: expected flags such as \"UP\" and \"LOWER_UP\""},
      {R"("operState": "SIDEWAYS")", "links[0].operState: expected a state such as \"UP\" or \"DOWN\""},
      {R"("ethtool": [])", "links[0].ethtool: expected an object"},
      {R"("ethtool": {"supported": "all"})", "links[0].ethtool.supported: expected a list of link modes"},
      {R"("ethtool": {"supported": ["1baseT/Full"]})",
       "links[0].ethtool.supported: expected link modes such as \"1000baseT/Full\""},
      {R"("hardware": {"pci": "03:00"})",
       "links[0].hardware.pci: expected a PCI address such as \"0000:03:00.0\""},
      {R"("hardware": {"slotKind": 8})",
       "links[0].hardware.slotKind: expected 3 (PCI), 4 (PCI-X) or 5 (PCI Express)"},
      {R"("bond": {"mode": 300})", "links[0].bond.mode: expected a whole number from 0 to 255"},
  };
  for (const auto& [text, expected] : cases) EXPECT_EQ(problem(linkWith(text)), expected);
}

TEST(SnapshotReader, BrokenFilesAreRefused) {
  EXPECT_EQ(problem(""), "expected one JSON object");
  EXPECT_EQ(problem("{"), "expected one JSON object");
  EXPECT_EQ(problem("[1, 2]"), "expected one JSON object");
  EXPECT_EQ(problem(std::string("\xFF\xFE{}")), "expected one JSON object");
  EXPECT_EQ(problem("{}"), "format: expected \"zeb-host-snapshot\" or \"zeb-host-timeline\"");
  EXPECT_EQ(problem(R"({"format": 7})"), "format: expected \"zeb-host-snapshot\" or \"zeb-host-timeline\"");
  EXPECT_EQ(problem(R"({"format": "zeb-host-snapshot"})"), "version: expected a whole number from 1");
  EXPECT_EQ(problem(R"({"format": "zeb-host-snapshot", "version": "1"})"),
            "version: expected a whole number from 1");
  EXPECT_EQ(problem(R"({"format": "zeb-host-snapshot", "version": 2})"),
            "version: 2 is newer than 1, the newest that is understood");
  EXPECT_EQ(problem(wrap(R"("links": {})")), "links: expected a list");
  EXPECT_EQ(problem(wrap(R"("links": [3])")), "links[0]: expected an object");
  EXPECT_EQ(problem(wrap(R"("links": [{"name": "eth0"}])")), "links[0]: expected an index from 1 and a name");
  EXPECT_EQ(problem(wrap(R"("links": [{"index": 1}])")), "links[0]: expected an index from 1 and a name");
  EXPECT_EQ(problem(wrap(R"("addresses": [{"index": 1, "address": "10.0.0.1", "prefixLength": 33}])")),
            "addresses[0].prefixLength: expected no more than the address has bits");
  EXPECT_EQ(problem(wrap(R"("addresses": [{"index": 1, "address": "10.0.0"}])")),
            "addresses[0].address: expected an IP address");
}

TEST(SnapshotReader, DeepAndLargeFilesAreRefused) {
  EXPECT_EQ(problem(wrap("\"x\": " + std::string(100000, '[') + std::string(100000, ']'))),
            "nested deeper than any snapshot");
  EXPECT_EQ(problem(std::string(kLargestSnapshotFile + 1, ' ')), "larger than any snapshot of a host");
  // A million ports do not fit.
  std::string many = R"({"format": "zeb-host-snapshot", "version": 1, "links": [)";
  for (int i = 1; i <= 1000000; ++i) {
    many += R"({"index": )" + std::to_string(i) +
            R"(, "name": "e", "parentDevice": "0000:00:00.0", "flags": ["UP"]},)";
  }
  EXPECT_EQ(problem(many), "larger than any snapshot of a host");
}

TEST(SnapshotWriter, WhatIsWrittenReadsTheSame) {
  for (const char* name : {"one_port.json", "bare_port.json", "two_cards.json", "teams.json"}) {
    const HostSnapshot first = only(recorded(name));
    const std::string text = writeSnapshot(first);
    const HostSnapshot second = only(text);
    EXPECT_EQ(writeSnapshot(second), text) << name;
    ASSERT_EQ(first.links.size(), second.links.size());
    for (std::size_t i = 0; i < first.links.size(); ++i) {
      const LinkFacts& a = first.links[i];
      const LinkFacts& b = second.links[i];
      EXPECT_EQ(a.name, b.name);
      EXPECT_EQ(a.flags, b.flags);
      EXPECT_EQ(a.ethtool, b.ethtool);
      EXPECT_EQ(a.bond, b.bond);
      EXPECT_EQ(a.bondMember, b.bondMember);
      EXPECT_EQ(a.statistics, b.statistics);
      EXPECT_TRUE(!a.hardware == !b.hardware && (!a.hardware || *a.hardware == *b.hardware));
    }
    EXPECT_EQ(first.addresses, second.addresses);
    EXPECT_EQ(first.routes, second.routes);
  }
}

TEST(SnapshotWriter, WritesWhatIsKnownAndNothingElse) {
  HostSnapshot host;
  host.links = {ethernetLink(2, "eth0")};
  const std::string text = writeSnapshot(host);
  EXPECT_THAT(text, HasSubstr("\"LOWER_UP\""));
  EXPECT_THAT(text, testing::Not(HasSubstr("mtu")));
  EXPECT_THAT(text, testing::Not(HasSubstr("hardware")));
}

TEST(SnapshotWriter, TextThatIsNoUtf8) {
  HostSnapshot host;
  host.links = {pciPort(2, "eth0", "0000:01:00.0")};
  HardwareFacts hardware;
  hardware.onboardLabel = "LAN \xFF";
  host.links[0].hardware = std::make_shared<HardwareFacts>(hardware);
  EXPECT_EQ(problem(writeSnapshot(host)), "");
}

TEST(SnapshotWriter, FlagsWithoutAName) {
  HostSnapshot host;
  host.links = {ethernetLink(2, "eth0")};
  host.links[0].flags = 0x40000001;
  EXPECT_THAT(writeSnapshot(host), HasSubstr("0x40000000"));
  EXPECT_EQ(only(writeSnapshot(host)).links[0].flags, 0x40000001u);
}

std::string timeline(const std::string& steps) {
  return R"({"format": "zeb-host-timeline", "version": 1, "steps": [)" + steps + "]}";
}
const std::string kBegin =
    R"({"at": 0, "snapshot": {"links": [{"index": 2, "name": "eth0", "mtu": 1500, "carrier": true},
       {"index": 3, "name": "eth1"}], "addresses": [{"index": 2, "address": "10.0.0.1", "prefixLength": 8}]}})";

TEST(Timeline, ChangesBuildOnTheStepBefore) {
  auto moments = readSnapshots(timeline(kBegin + R"(,
      {"at": 1.5, "change": {"links": [{"index": 2, "mtu": null, "carrier": false}, {"index": 4, "name": "eth2"}],
                             "removed": [3]}},
      {"at": 3, "change": {"addresses": [], "rules": [{"family": "ipv4", "table": 254}]}})"));
  ASSERT_TRUE(moments) << moments.failure().what;
  ASSERT_EQ(moments->size(), 3u);
  EXPECT_EQ((*moments)[1].at, 1.5);
  const HostSnapshot& second = (*moments)[1].snapshot;
  ASSERT_EQ(second.links.size(), 2u);
  EXPECT_EQ(second.links[0].name, "eth0");
  EXPECT_EQ(second.links[0].carrier, false);
  EXPECT_FALSE(second.links[0].mtu);
  EXPECT_EQ(second.links[1].name, "eth2");
  EXPECT_EQ(second.addresses.size(), 1u);
  EXPECT_TRUE((*moments)[2].snapshot.addresses.empty());
  EXPECT_TRUE(second.rules.empty());
  EXPECT_EQ((*moments)[2].snapshot.rules.size(), 1u);
  EXPECT_EQ((*moments)[2].snapshot.links.size(), 2u);
}

TEST(Timeline, BadStepsNameTheirPlace) {
  const BadCase cases[] = {
      {"", "steps: expected a list of at least one"},
      {R"(3)", "steps[0].expected an object"},
      {R"({"snapshot": {}})", "steps[0].at: expected seconds, not before the step before"},
      {R"({"at": -1, "snapshot": {}})", "steps[0].at: expected seconds, not before the step before"},
      {R"({"at": 5, "snapshot": {}}, {"at": 4, "snapshot": {}})",
       "steps[1].at: expected seconds, not before the step before"},
      {R"({"at": 0})", "steps[0].expected either a snapshot or a change"},
      {R"({"at": 0, "change": {}})", "steps[0].expected a snapshot to begin with"},
      {R"({"at": 0, "snapshot": {}}, {"at": 1, "change": 7})", "steps[1].change: expected an object"},
      {R"({"at": 0, "snapshot": {}}, {"at": 1, "change": {"links": [{"name": "x"}]}})",
       "steps[1].change.links: expected objects with an index"},
      {R"({"at": 0, "snapshot": {}}, {"at": 1, "change": {"links": 7}})",
       "steps[1].change.links: expected a list"},
      {R"({"at": 0, "snapshot": {}}, {"at": 1, "change": {"removed": 7}})",
       "steps[1].change.removed: expected a list"},
      {R"({"at": 0, "snapshot": {"links": [{"index": 2, "name": "a", "mtu": "x"}]}})",
       "steps[0].links[0].mtu: expected a whole number from 0 to 4294967295"},
      {R"({"at": 0, "snapshot": 7})", "steps[0].expected an object"},
      {R"({"at": 0, "snapshot": 7}, {"at": 1, "change": {}})",
       "steps[1].snapshot before: expected an object"},
  };
  for (const auto& [steps, expected] : cases) EXPECT_EQ(problem(timeline(steps)), expected) << steps;
}

TEST(Anonymizer, ReplacesEqualsByEquals) {
  HostSnapshot host = only(recorded("teams.json"));
  const HostSnapshot before = host;
  anonymize(host, 42);
  EXPECT_NE(host.links[0].address, before.links[0].address);
  EXPECT_EQ(host.links[0].address == host.links[1].address,
            before.links[0].address == before.links[1].address);
  EXPECT_EQ(host.links[0].permanentAddress, host.links[0].bondMember->permanentAddress);
  EXPECT_NE(host.addresses[0].address, before.addresses[0].address);
  EXPECT_TRUE(sameNetwork(host.addresses[0].address, host.routes[0].gateway, 24))
      << "the gateway stays in reach";
  HostSnapshot again = before;
  anonymize(again, 42);
  EXPECT_EQ(writeSnapshot(again), writeSnapshot(host));
  HostSnapshot other = before;
  anonymize(other, 43);
  EXPECT_NE(other.addresses[0].address, host.addresses[0].address);
}

TEST(Anonymizer, SerialsGoAndWhatTheyAreNotStays) {
  HostSnapshot host = only(recorded("one_port.json"));
  anonymize(host, 1);
  EXPECT_EQ(host.links[0].hardware->serialNumber, "SERIAL-1");
  EXPECT_EQ(host.links[0].hardware->partNumber, "E12345-001");
  EXPECT_EQ(host.links[0].name, "eth0");
  EXPECT_TRUE(isLinkLocal(host.addresses[2].address));
  EXPECT_NE(toText(host.addresses[2].address), "fe80::21b:21ff:fe00:5e") << "it has the MAC address in it";
}

TEST(Anonymizer, NamesDoNotTellAddresses) {
  HostSnapshot host;
  host.links.resize(4);
  host.links[0].name = "enx001a2b3c4d5e";
  host.links[0].address = parseHardwareAddress("00:1a:2b:3c:4d:ff");
  host.links[1].name = "eth1";
  // Learnt last, and from another interface.
  host.links[2].name = "bond0";
  host.links[2].address = host.links[1].address = parseHardwareAddress("00:1a:2b:3c:4d:5e");
  host.links[3].name = "veth0123456789ab";
  anonymize(host, 1);
  std::string replaced = toText(*host.links[2].address);
  std::erase(replaced, ':');
  EXPECT_EQ(host.links[0].name, "enx" + replaced);
  EXPECT_NE(replaced, "001a2b3c4d5e");
  EXPECT_EQ(host.links[1].name, "eth1");
  EXPECT_EQ(host.links[3].name, "veth0123456789ab") << "digits that are no address stay";
}

TEST(Anonymizer, LoopbackStays) {
  HostSnapshot host;
  host.addresses = {addressOn(1, "127.0.0.1", 8), addressOn(1, "::1", 128)};
  anonymize(host, 7);
  EXPECT_EQ(toText(host.addresses[0].address), "127.0.0.1");
  EXPECT_EQ(toText(host.addresses[1].address), "::1");
}

}  // namespace
}  // namespace ZEB::ethernet::test
