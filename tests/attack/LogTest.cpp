// What clients write into the log.
#include <gmock/gmock.h>

#include <sstream>

#include "Attack.h"
#include "Ground.h"
#include "Unit.h"

namespace ZebManager {
namespace {

using testing::HasSubstr;
using testing::Not;

constexpr char kForged[] = "error: forged by a client";

std::string named(const std::string& method, const std::string& key) {
  return post(
      call(method,
           "<IPARAMVALUE NAME=\"InstanceName\"><INSTANCENAME CLASSNAME=\"ZEB_EthernetPort\"><KEYBINDING "
           "NAME=\"DeviceID\"><KEYVALUE VALUETYPE=\"string\">" +
               key + "</KEYVALUE></KEYBINDING></INSTANCENAME></IPARAMVALUE>"),
      method, "root/jxv", "Connection: close\r\n");
}

void expectNoForgedLine(const std::string& log) {
  std::istringstream lines(log);
  for (std::string line; std::getline(lines, line);) {
    EXPECT_THAT(line, Not(testing::StartsWith(kForged)));
    EXPECT_LT(line.size(), 2500U);
  }
}

/// At the level at which the plug-in says most.
TEST(Log, IsNotWrittenByWhoReads) {
  REQUIRE_GROUND();
  const Unit unit({.logLevel = "info"});
  ASSERT_EQ(statusOf(ask(unit.http(), instancesOf("ZEB_EthernetPort"))), 200);
  for (const char* const method : {"GetInstance", "AssociatorNames", "References"}) {
    ask(unit.http(), named(method, std::string("a&#10;") + kForged + "&#13;" + kForged));
  }
  EXPECT_THAT(unit.log(), HasSubstr(kForged)) << "it is told, but in a line of the plug-in's";
  const std::size_t before = unit.log().size();
  EXPECT_EQ(statusOf(ask(unit.http(), named("GetInstance", std::string(4'000'000, 'x')))), 200);
  EXPECT_LT(unit.log().size() - before, 16U << 10);
  expectNoForgedLine(unit.log());
}

TEST(Log, IsNotWrittenByWhoGuesses) {
  REQUIRE_GROUND();
  const Unit unit;
  for (const std::string& user : {std::string("x\n") + kForged, std::string("x' keep failing\r") + kForged,
                                  std::string(250, 'x'), std::string("it's")}) {
    for (int i = 0; i < 6; ++i) ask(unit.http(), namesOfClasses(credentials(user, std::to_string(i))));
  }
  expectNoForgedLine(unit.log());
  EXPECT_THAT(unit.log(), HasSubstr("logins of '" + std::string(100, 'x') + "'... keep failing"));
  EXPECT_THAT(unit.log(), Not(HasSubstr("x' keep")));
}

}  // namespace
}  // namespace ZebManager
