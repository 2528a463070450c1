#include "ClassTest.h"
#include "DataLibrary.h"
#include "classes/team/ZEB_EthernetTeamMember.h"

namespace ZEB::test {
namespace {

using CmpiCpp::CmpiObjectPath;
using ethernet::PortFacts;
using ethernet::TeamFacts;

CmpiObjectPath named(const char* className) {
  CmpiObjectPath path("root/jxv", CmpiCpp::CmpiName(std::string(className)));
  path.addKey("Name", std::string_view("x"));
  return path;
}

class TeamMemberTest : public ClassTest {
 protected:
  ZEB_EthernetTeamMember make(TeamFacts team, PortFacts port) {
    return {recorded.logger,           nameSpace,
            named("ZEB_EthernetTeam"), named("ZEB_EthernetPort"),
            teamOf(std::move(team)),   portOf(std::move(port))};
  }
  Table read(TeamFacts team, PortFacts port) {
    return propertiesOf(make(std::move(team), std::move(port)).makeInstance());
  }
};

const Table kEnds{{"Collection", R"(reference root/jxv:ZEB_EthernetTeam.Name="x")"},
                  {"Member", R"(reference root/jxv:ZEB_EthernetPort.Name="x")"}};

Table everythingOfMember() {
  Table table = kEnds;
  table.emplace_back("MemberOperationalStatus", "uint16[] {2}");
  table.emplace_back("MemberStatusDescriptions", "string[] {\"OK\"}");
  table.emplace_back("Role", "uint16 1");
  return table;
}
const Table kDegraded{{"MemberOperationalStatus", "uint16[] {3}"},
                      {"MemberStatusDescriptions", "string[] {\"Degraded\"}"}};
const Table kUnknown{{"MemberOperationalStatus", "uint16[] {0}"},
                     {"MemberStatusDescriptions", "string[] {\"Unknown\"}"}};

TeamFacts degradedTeam() {
  TeamFacts facts = everyTeamFacts();
  facts.members[1].slave.status = operationalStatus::Error;
  return facts;
}

TEST_F(TeamMemberTest, OfATeamAndAPortThatAreOkIsOk) {
  EXPECT_EQ(read(everyTeamFacts(), everyPortFacts()), everythingOfMember());
}

TEST_F(TeamMemberTest, HasAReferenceKeyForEachRole) {
  EXPECT_EQ(keysOf(make(everyTeamFacts(), everyPortFacts()).makeObjectPath()), kEnds);
}

TEST_F(TeamMemberTest, IsDegradedUnlessBothAreOk) {
  EXPECT_EQ(read(degradedTeam(), everyPortFacts()), edited(everythingOfMember(), kDegraded));
  for (const auto status :
       {operationalStatus::Degraded, operationalStatus::Error, operationalStatus::Dormant}) {
    PortFacts port = everyPortFacts();
    setStatus(port.link, status);
    EXPECT_EQ(read(everyTeamFacts(), port), edited(everythingOfMember(), kDegraded));
    EXPECT_EQ(read(degradedTeam(), port), edited(everythingOfMember(), kDegraded));
  }
}

TEST_F(TeamMemberTest, WithoutOneOfTheStatusValuesIsUnknown) {
  TeamFacts team = everyTeamFacts();
  forgetStatus(team);
  PortFacts port = everyPortFacts();
  forgetStatus(port);
  EXPECT_EQ(read(team, everyPortFacts()), edited(everythingOfMember(), kUnknown));
  EXPECT_EQ(read(everyTeamFacts(), port), edited(everythingOfMember(), kUnknown));
  EXPECT_EQ(read(team, port), edited(everythingOfMember(), kUnknown));
}

TEST_F(TeamMemberTest, HasTheRoleOfItsNameInTheTeam) {
  for (const auto& [role, text] : {std::pair(EthTeamMemberRoleEnum::Active, "uint16 1"),
                                   std::pair(EthTeamMemberRoleEnum::Backup, "uint16 2"),
                                   std::pair(EthTeamMemberRoleEnum::Failed, "uint16 3"),
                                   std::pair(EthTeamMemberRoleEnum::Unknown, "uint16 0")}) {
    TeamFacts team = everyTeamFacts();
    team.members[0].slave.role = role;
    EXPECT_EQ(read(team, everyPortFacts()), edited(everythingOfMember(), {{"Role", text}}));
  }
}

TEST_F(TeamMemberTest, WhoseNameIsNotInTheTeamHasNoRole) {
  PortFacts port = everyPortFacts();
  port.link.name = "eth9";
  EXPECT_EQ(read(everyTeamFacts(), port), edited(everythingOfMember(), {{"Role", "uint16 0"}}));
  port.link.name = "ETH0";
  EXPECT_EQ(read(everyTeamFacts(), port), edited(everythingOfMember(), {{"Role", "uint16 0"}}));
}

TEST_F(TeamMemberTest, WhoseNameIsNotKnownHasNoRole) {
  PortFacts port = everyPortFacts();
  port.link.name.clear();
  EXPECT_EQ(read(everyTeamFacts(), port), edited(everythingOfMember(), {{"Role", "uint16 0"}}));
}

TEST_F(TeamMemberTest, DegradedAtTheFirstReportStaysDegraded) {
  auto member = make(degradedTeam(), everyPortFacts());
  for (int report = 0; report < 3; ++report) {
    EXPECT_EQ(propertiesOf(member.makeInstance()), edited(everythingOfMember(), kDegraded));
  }
}

TEST_F(TeamMemberTest, DegradedAfterTheFirstReportIsInErrorForAsLongAsItIsDegraded) {
  DataLibrary library;
  auto member = make(everyTeamFacts(), everyPortFacts());
  EXPECT_EQ(propertiesOf(member.makeInstance()), everythingOfMember());
  library.portStatus = operationalStatus::Dormant;
  const Table inError = edited(everythingOfMember(), {{"MemberOperationalStatus", "uint16[] {6}"},
                                                      {"MemberStatusDescriptions", "string[] {\"Error\"}"}});
  for (int report = 0; report < 3; ++report) EXPECT_EQ(propertiesOf(member.makeInstance()), inError);
  library.portStatus = operationalStatus::OK;
  EXPECT_EQ(propertiesOf(member.makeInstance()), everythingOfMember());
  library.portStatus = operationalStatus::Degraded;
  EXPECT_EQ(propertiesOf(member.makeInstance()), inError);
}

}  // namespace
}  // namespace ZEB::test
