#include "ClassTest.h"
#include "MemoryHost.h"
#include "classes/team/ZEB_EthernetTeam.h"

namespace ZEB::test {
namespace {

using ethernet::TeamFacts;

class TeamTest : public ClassTest {
 protected:
  ZEB_EthernetTeam make(const EthernetTeamDataObject& record) {
    return {recorded.logger, nameSpace, 7, record};
  }
  Table read(TeamFacts facts) { return propertiesOf(make(teamOf(std::move(facts))).makeInstance()); }
};

TeamFacts knownTeam() {
  TeamFacts facts = everyTeamFacts();
  facts.link.ethtool.speed = 2000;
  return facts;
}

/// In mode balance-rr.
Table everythingOfTeam() {
  return {
      {"Caption", "string \"QV Network Team 7\""},
      {"ElementName", "string \"QV Network Team 7\""},
      {"Description", "string \"Local Area Connection 7\""},
      {"InstanceID", "string \"JXV:ZEB_EthernetTeam:7\""},
      {"LoadBalanceAlgorithm", "uint16 3"},
      {"TypeOfSet", "uint16[] {3}"},
      {"MaxNumberSupported", "uint32 2"},
      {"MinNumberNeeded", "uint32 1"},
      {"RedundancyStatus", "uint16 2"},
      {"GroupOperationalStatus", "uint16[] {2}"},
      {"ActiveMaximumTransmissionUnit", "uint64 9000"},
      {"Speed", "uint64 2000000000"},
      {"TeamCapabilities", "uint16[] {4, 5}"},
      {"TeamEnabledCapabilities", "uint16[] {4, 5}"},
      {"TeamOperatingMode", "uint16[] {2}"},
      {"TeamCurrentOperatingMode", "uint16[] {2}"},
  };
}

TEST_F(TeamTest, ShowsEverythingThatIsKnown) {
  EXPECT_EQ(read(knownTeam()), everythingOfTeam());
}

TEST_F(TeamTest, IsKeyedByItsIdAlone) {
  EXPECT_EQ(keysOf(make(teamOf(knownTeam())).makeObjectPath()),
            (Table{{"InstanceID", "string \"JXV:ZEB_EthernetTeam:7\""}}));
}

class TeamRow : public TeamTest, public testing::WithParamInterface<UnknownRow<TeamFacts>> {};

TEST_P(TeamRow, StandsInOrIsLeftOut) {
  TeamFacts facts = knownTeam();
  GetParam().forget(facts);
  EXPECT_EQ(read(facts), edited(everythingOfTeam(), GetParam().changes));
}

INSTANTIATE_TEST_SUITE_P(
    Rows, TeamRow,
    testing::Values(
        UnknownRow<TeamFacts>{"OperatingMode",
                              [](TeamFacts& f) { f.link.bond->mode.reset(); },
                              {{"LoadBalanceAlgorithm", "uint16 0"},
                               {"TypeOfSet", "uint16[] {0}"},
                               {"TeamEnabledCapabilities", ""},
                               {"TeamOperatingMode", ""},
                               {"TeamCurrentOperatingMode", ""}}},
        // A team without a name is gone, and with it its members.
        UnknownRow<TeamFacts>{
            "Members",
            [](TeamFacts& f) { f.link.name.clear(); },
            {{"MaxNumberSupported", "uint32 0"}, {"RedundancyStatus", ""}, {"TeamCapabilities", ""}}},
        UnknownRow<TeamFacts>{"Status", forgetStatus<TeamFacts>, {{"GroupOperationalStatus", ""}}},
        UnknownRow<TeamFacts>{"MaxFrameSize",
                              [](TeamFacts& f) { f.link.mtu.reset(); },
                              {{"ActiveMaximumTransmissionUnit", "uint64 0"}}},
        UnknownRow<TeamFacts>{"Speed",
                              [](TeamFacts& f) {
                                f.link.ethtool.speed.reset();
                                for (auto& member : f.members) member.speed.reset();
                              },
                              {{"Speed", "uint64 0"}}}),
    kByName);

TEST_F(TeamTest, OfWhichNothingIsKnownShowsEveryStandIn) {
  EXPECT_EQ(propertiesOf(make(EthernetTeamDataObject()).makeInstance()),
            edited(everythingOfTeam(), {{"LoadBalanceAlgorithm", "uint16 0"},
                                        {"TypeOfSet", "uint16[] {0}"},
                                        {"MaxNumberSupported", "uint32 0"},
                                        {"RedundancyStatus", ""},
                                        {"GroupOperationalStatus", ""},
                                        {"ActiveMaximumTransmissionUnit", "uint64 0"},
                                        {"Speed", "uint64 0"},
                                        {"TeamCapabilities", ""},
                                        {"TeamEnabledCapabilities", ""},
                                        {"TeamOperatingMode", ""},
                                        {"TeamCurrentOperatingMode", ""}}));
}

struct ModeRow {
  const char* name;
  std::uint8_t mode;
  const char* algorithm;
  const char* other;  ///< null when the property is not there
  const char* typeOfSet;
  const char* operatingMode;
  const char* enabled;  ///< empty when the property is not there

  friend void PrintTo(const ModeRow& row, std::ostream* out) { *out << row.name; }
};

class TeamMode : public TeamTest, public testing::WithParamInterface<ModeRow> {};

TEST_P(TeamMode, DecidesAlgorithmSetAndOperatingModes) {
  const ModeRow& row = GetParam();
  TeamFacts facts = knownTeam();
  facts.link.bond->mode = row.mode;
  Table expected = edited(everythingOfTeam(), {{"LoadBalanceAlgorithm", row.algorithm},
                                               {"TypeOfSet", row.typeOfSet},
                                               {"TeamEnabledCapabilities", row.enabled},
                                               {"TeamOperatingMode", row.operatingMode},
                                               {"TeamCurrentOperatingMode", row.operatingMode}});
  if (row.other) expected.insert(expected.begin() + 5, {"OtherLoadBalanceAlgorithm", row.other});
  EXPECT_EQ(read(facts), expected);
}

constexpr const char* kOne = "uint16[] {2}";
constexpr const char* kTwo = "uint16[] {3}";
INSTANTIATE_TEST_SUITE_P(
    Modes, TeamMode,
    testing::Values(ModeRow{"BalanceRr", 0, "uint16 3", nullptr, kTwo, kOne, "uint16[] {4, 5}"},
                    ModeRow{"ActiveBackup", 1, "uint16 0", nullptr, kOne, kOne, "uint16[] {4}"},
                    ModeRow{"BalanceXor", 2, "uint16 1", "string \"balance-xor\"", kTwo, kOne,
                            "uint16[] {4, 5}"},
                    ModeRow{"Broadcast", 3, "uint16 0", nullptr, kOne, kOne, "uint16[] {4}"},
                    ModeRow{"Lacp", 4, "uint16 1", "string \"8023ad\"", kTwo, kOne, "uint16[] {4, 5}"},
                    ModeRow{"BalanceTlb", 5, "uint16 1", "string \"balance-tlb\"", kTwo, "uint16[] {2, 3}",
                            "uint16[] {4, 5}"},
                    ModeRow{"BalanceAlb", 6, "uint16 1", "string \"balance-alb\"", kTwo, "uint16[] {2, 3}",
                            "uint16[] {4, 5}"},
                    ModeRow{"AnyOther", 7, "uint16 1", "string \"\"", kTwo, "uint16[] {0}", ""}),
    kByName);

TEST_F(TeamTest, WithoutItsStandByMemberHasLostItsRedundancy) {
  TeamFacts facts = knownTeam();
  facts.members[1].slave.status = operationalStatus::Error;
  EXPECT_EQ(read(facts), edited(everythingOfTeam(), {{"RedundancyStatus", "uint16 4"},
                                                     {"GroupOperationalStatus", "uint16[] {3}"}}));
}

TEST_F(TeamTest, DegradedWhenBuiltShowsDegraded) {
  TeamFacts facts = knownTeam();
  facts.members[1].slave.status = operationalStatus::Error;
  auto team = make(teamOf(facts));
  for (int report = 0; report < 2; ++report) {
    EXPECT_EQ(textOf(team.makeInstance().getProperty("GroupOperationalStatus")), "uint16[] {3}");
  }
  EXPECT_EQ(team.lastStatus(), operationalStatus::Degraded);
}

TEST_F(TeamTest, AnInstanceReadsTheTeamAnew) {
  MemoryHost host;
  host.addTeam("bond0");
  host.addPort("eth0");
  host.join("eth0", "bond0");
  auto team = make(host.team(0));
  EXPECT_EQ(textOf(team.makeInstance().getProperty("GroupOperationalStatus")), "uint16[] {2}");
  setStatus(host.link("eth0"), operationalStatus::Error);
  EXPECT_EQ(textOf(team.makeInstance().getProperty("GroupOperationalStatus")), "uint16[] {6}");
}

TEST_F(TeamTest, LogsWhatCannotBeReadWhenItIsBuilt) {
  auto team = make(EthernetTeamDataObject());
  EXPECT_EQ(team.teamName(), "");
  EXPECT_EQ(team.lastStatus(), operationalStatus::Unknown);
  const std::vector<RecordingLogSink::Line> expected{
      {LogLevel::Info, "Test:ZEB_EthernetTeam", "cxtor()"},
      {LogLevel::Error, "Test:ZEB_EthernetTeam",
       "ZEB_EthernetTeam:7 failed to call EthernetTeamDataObject::getOsDeviceName"},
      {LogLevel::Error, "Test:ZEB_EthernetTeam",
       "ZEB_EthernetTeam:7 failed to call EthernetTeamDataObject::getTeamStatus"}};
  EXPECT_EQ(recorded.sink->lines(), expected);
}

TEST_F(TeamTest, KnowsItsNameAndWatchesItsStatus) {
  auto team = make(teamOf(knownTeam()));
  EXPECT_EQ(team.teamName(), "bond0");
  EXPECT_TRUE(team.watchesStatus());
  EXPECT_EQ(recorded.sink->texts(), std::vector<std::string>{"cxtor()"});
}

}  // namespace
}  // namespace ZEB::test
