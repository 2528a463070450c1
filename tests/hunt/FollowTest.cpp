#include <gmock/gmock.h>

#include <functional>

#include "History.h"
#include "LongLived.h"
#include "ProviderFixture.h"

// One change each: what a plug-in that is running serves of it, beside one that is loaded then.

namespace ZEB::test {
namespace {

using testing::ElementsAreArray;
using Values = std::vector<std::string>;

struct Change {
  const char* name;
  const char* className;
  const char* property;
  Values before;
  std::function<void(Machine&)> happens;
  Values after;
  bool needsPass = false;  ///< the instance stands for what there was when it was built

  friend void PrintTo(const Change& change, std::ostream* out) { *out << change.name; }
};

// eth0 and eth1, of which the first has an address, and bond0, which has none, of eth2 and eth3; by number.
constexpr std::uint32_t kEth0 = 2, kEth2 = 4, kEth3 = 5;

Machine portsAndATeam() {
  Machine machine = firstMachine();
  for (const std::uint32_t team : machine.all(Machine::Kind::Team))
    machine.interfaces.at(team).addresses = {};
  return machine;
}

auto to(std::uint32_t number, void (*change)(Machine::Interface&)) {
  return [=](Machine& machine) { change(machine.interfaces.at(number)); };
}

void pullCable(Machine::Interface& interface) {
  interface.carrier = false;
}

class Follow : public ProviderTest, public testing::WithParamInterface<Change> {
 protected:
  Follow() {
    machine.play(file);
    configure("ZEB_LINK_SETTLE_SECONDS", "0");
    configure("ZEB_SOURCE_FILE", file.string());
  }
  ~Follow() override { unsetenv("ZEB_LINK_SETTLE_SECONDS"); }

  /// Of the instances of the class, in the order of their paths.
  static Values valuesIn(const Served& served, const Change& change) {
    const std::string start = std::string(":") + change.className + ".";
    const std::string end = std::string(" ") + change.property;
    Values values;
    for (const auto& [what, value] : served) {
      const std::size_t colon = what.find(':');
      if (what.compare(colon, start.size(), start) == 0 && what.ends_with(end)) values.push_back(value);
    }
    return values;
  }

  Machine machine = portsAndATeam();
  const std::filesystem::path file = folder / "machine.json";
};

TEST_P(Follow, IsServedAsByOneThatIsLoadedNow) {
  const Change& change = GetParam();
  FakeBroker own;
  LongLived lived(own);
  EXPECT_THAT(valuesIn(lived.serves(), change), ElementsAreArray(change.before));
  change.happens(machine);
  machine.play(file);
  if (!change.needsPass) {
    EXPECT_THAT(valuesIn(lived.serves(), change), ElementsAreArray(change.after));
  }
  lived.pass();
  const Served serves = lived.serves();
  EXPECT_THAT(valuesIn(serves, change), ElementsAreArray(change.after));
  EXPECT_EQ(differences(servedByANewOne(), serves), "");
}

const std::string kOK = "uint16[] {2}", kDegraded = "uint16[] {3}", kError = "uint16[] {6}";
const std::string kActive = "uint16 1", kBackup = "uint16 2", kFailed = "uint16 3";

INSTANTIATE_TEST_SUITE_P(
    All, Follow,
    testing::Values(
        Change{"StatusOfAController",
               "ZEB_EthernetPortController",
               "OperationalStatus",
               {kOK, kOK, kOK, kOK},
               to(kEth0, pullCable),
               {kError, kOK, kOK, kOK}},
        Change{"VersionOfADriver",
               "ZEB_EthernetPortControllerSoftwareIdentity",
               "VersionString",
               {"string \"1\"", "string \"1\"", "string \"1\"", "string \"1\""},
               to(kEth0, [](auto& port) { port.settings.driverVersion = 2; }),
               {"string \"2\"", "string \"1\"", "string \"1\"", "string \"1\""}},
        Change{"VersionOfAFirmware",
               "ZEB_EthernetPortControllerFirmwareIdentity",
               "VersionString",
               {"string \"1\"", "string \"1\"", "string \"1\"", "string \"1\""},
               to(kEth0, [](auto& port) { port.settings.firmwareVersion = 2; }),
               {"string \"2\"", "string \"1\"", "string \"1\"", "string \"1\""}},
        // That of the team comes first.
        Change{"StatusOfAPortsLanEndpoint",
               "ZEB_EthernetLANEndpoint",
               "OperationalStatus",
               {kOK, kOK, kOK, kOK, kOK},
               to(kEth0, pullCable),
               {kOK, kError, kOK, kOK, kOK}},
        Change{"StatusOfATeamsLanEndpoint",
               "ZEB_EthernetLANEndpoint",
               "OperationalStatus",
               {kOK, kOK, kOK, kOK, kOK},
               [](Machine& machine) {
                 pullCable(machine.interfaces.at(kEth2));
                 pullCable(machine.interfaces.at(kEth3));
               },
               {kError, kOK, kOK, kError, kError},
               true},
        Change{"StatusOfAnIpEndpoint",
               "ZEB_IPProtocolEndpoint",
               "OperationalStatus",
               {kOK},
               to(kEth0, pullCable),
               {kError}},
        // Both turned degraded while they were watched, which one that is new does not know.
        Change{"StatusOfMembersWhenOneFails",
               "ZEB_EthernetTeamMember",
               "MemberOperationalStatus",
               {kOK, kOK},
               to(kEth2, pullCable),
               {kError, kError},
               true},
        Change{"RoleOfAMemberThatFails",
               "ZEB_EthernetTeamMember",
               "Role",
               {kActive, kActive},
               to(kEth2, pullCable),
               {kFailed, kActive},
               true},
        Change{"RoleOfAMemberThatStandsBy",
               "ZEB_EthernetTeamMember",
               "Role",
               {kActive, kActive},
               to(kEth3, [](auto& port) { port.backup = true; }),
               {kActive, kBackup},
               true},
        Change{"RedundancyOfATeam",
               "ZEB_EthernetTeam",
               "RedundancyStatus",
               {"uint16 2"},
               to(kEth2, pullCable),
               {"uint16 4"},
               true},
        Change{"FrameSizeOfAPort",
               "ZEB_EthernetPort",
               "ActiveMaximumTransmissionUnit",
               {"uint64 1500", "uint64 1500", "uint64 1500", "uint64 1500"},
               to(kEth0, [](auto& port) { port.settings.frameSize = 9000; }),
               {"uint64 9000", "uint64 1500", "uint64 1500", "uint64 1500"}},
        Change{"SpeedOfAPort",
               "ZEB_EthernetPort",
               "Speed",
               {"uint64 1000000000", "uint64 1000000000", "uint64 1000000000", "uint64 1000000000"},
               to(kEth0, [](auto& port) { port.settings.megabits = 100; }),
               {"uint64 100000000", "uint64 1000000000", "uint64 1000000000", "uint64 1000000000"}},
        Change{"WakeOnLanOfAPort",
               "ZEB_EthernetPort",
               "EnabledCapabilities",
               {"uint16[] {0}", "uint16[] {0}", "uint16[] {0}", "uint16[] {0}"},
               to(kEth0, [](auto& port) { port.settings.wakesOnLan = true; }),
               {"uint16[] {3}", "uint16[] {0}", "uint16[] {0}", "uint16[] {0}"}},
        Change{"CounterOfAPort",
               "ZEB_EthernetStatistics",
               "PacketsReceived",
               {"uint64 1", "uint64 1", "uint64 1", "uint64 1"},
               to(kEth0, [](auto& port) { port.settings.packets = 2; }),
               {"uint64 2", "uint64 1", "uint64 1", "uint64 1"}},
        Change{"AddressOfAPort",
               "ZEB_IPProtocolEndpoint",
               "IPv4Address",
               {"string \"10.0.0.1\""},
               to(kEth0, [](auto& port) { port.addresses = {"10.0.0.2"}; }),
               {"string \"10.0.0.2\""},
               true},
        Change{"GatewayOfAPort",
               "ZEB_EthernetRemoteServiceAccessPoint",
               "AccessInfo",
               {},
               to(kEth0, [](auto& port) { port.gateway = 4; }),
               {"string \"10.0.0.254 Netmask: 255.255.255.0\""},
               true},
        Change{
            "NameOfATeam",
            "ZEB_EthernetLANEndpoint",
            "Description",
            {"string \"bond0\"", "string \"eth0\"", "string \"eth1\"", "string \"eth2\"", "string \"eth3\""},
            [](Machine& machine) {
              machine.interfaces.at(machine.all(Machine::Kind::Team)[0]).name = "bond1";
            },
            {"string \"bond1\"", "string \"eth0\"", "string \"eth1\"", "string \"eth2\"", "string \"eth3\""},
            true},
        Change{"VlanOfATeam",
               "ZEB_EthernetLANEndpoint",
               "VLANId",
               {},
               [](Machine& machine) {
                 machine.add({.kind = Machine::Kind::Vlan,
                              .name = "vlan0",
                              .carriedBy = machine.all(Machine::Kind::Team)[0]});
               },
               {"uint16 7"},
               true}),
    [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace ZEB::test
