#include <gmock/gmock.h>

#include "BuildFixture.h"
#include "DataLibrary.h"
#include "InstanceText.h"

// What is built a second time, and when the data library fails half way.

namespace ZEB::test {
namespace {

TEST_F(BuildTest, TheSecondBuildStoresNoKeyAnew) {
  addPort("eth0");
  objects();
  EXPECT_TRUE(
      log->has(LogLevel::Info, "store key for //" + hostName() +
                                   "/root/jxv:ZEB_EthernetPort.CreationClassName=\"ZEB_EthernetPort\","
                                   "SystemCreationClassName=\"ZEB_ComputerSystem\",SystemName=\"" +
                                   hostName() + "\",DeviceID=\"JXV:ZEB_EthernetPort:1\"..."));
  log->clear();
  objects();
  EXPECT_FALSE(log->mentions(LogLevel::Info, "store key for "));
}

TEST_F(BuildTest, ATeamListThatFailsHalfWayKeepsWhatWasBuilt) {
  for (const char* team : {"bond0", "bond1", "bond2"}) host.addTeam(team);
  addPort("eth0");
  DataLibrary library;
  library.teamsUntilFailure = 1;
  const auto found = objects();
  EXPECT_EQ(found.at("ZEB_EthernetTeam"), (Names{"Team:1", "Team:2"}));
  EXPECT_EQ(found.at("ZEB_EthernetPort"), Names{"Port:1"});
  EXPECT_TRUE(log->has(LogLevel::Error, "failed to _ethTeamMRA::getNextData()"));
}

TEST_F(BuildTest, AnAdapterListThatFailsHalfWayKeepsWhatWasBuilt) {
  for (const char* port : {"eth0", "eth1", "eth2"}) addPort(port);
  DataLibrary library;
  library.adaptersUntilFailure = 1;
  const auto found = objects();
  EXPECT_EQ(found.at("ZEB_EthernetPort"), (Names{"Port:1", "Port:2"}));
  EXPECT_TRUE(found.contains("ZEB_EthernetCollection"));
  EXPECT_TRUE(log->has(LogLevel::Error, "failed to _ethMRA::getNextData()"));
}

TEST_F(BuildTest, AListThatEndsIsNoFailure) {
  addPort("eth0");
  host.addTeam("bond0");
  objects();
  EXPECT_FALSE(log->mentions(LogLevel::Error, "failed to "));
}

}  // namespace
}  // namespace ZEB::test
