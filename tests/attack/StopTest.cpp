// Being asked to end while clients, users' modules and listeners hang.
#include <gmock/gmock.h>

#include <chrono>
#include <fstream>
#include <thread>

#include "Attack.h"
#include "Ground.h"
#include "Unit.h"

namespace ZebManager {
namespace {

using testing::HasSubstr;
using testing::StartsWith;
using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

/// By its design it does not return: a setting, and then a name that is none.
std::string hanging() {
  const std::string name =
      "<INSTANCENAME CLASSNAME=\"ZEB_EthEventSettings\"><KEYBINDING NAME=\"InstanceId\"><KEYVALUE>JXV:0"
      "</KEYVALUE></KEYBINDING></INSTANCENAME>";
  return post(
      call("ModifyInstance",
           "<IPARAMVALUE NAME=\"ModifiedInstance\"><VALUE.NAMEDINSTANCE>" + name +
               "<INSTANCE CLASSNAME=\"ZEB_EthEventSettings\"><PROPERTY NAME=\"PollInterval\"><VALUE>300"
               "</VALUE></PROPERTY></INSTANCE></VALUE.NAMEDINSTANCE></IPARAMVALUE><IPARAMVALUE "
               "NAME=\"PropertyList\"><VALUE.ARRAY><VALUE>PollInterval</VALUE><VALUE>None</VALUE>"
               "</VALUE.ARRAY></IPARAMVALUE>"),
      "ModifyInstance", "root/jxv", credentials("writer", "secret") + "Connection: close\r\n");
}

/// Ends the server under a request, and returns what the client got. The 5 s are for the end alone.
std::string endedUnder(Unit& unit, const std::string& request) {
  std::string answer;
  std::thread client([&] { answer = ask(unit.http(), request, 30); });
  std::this_thread::sleep_for(std::chrono::milliseconds(500));
  const auto begin = Clock::now();
  EXPECT_EQ(unit.stop(), 0);
  EXPECT_LT(Seconds(Clock::now() - begin).count(), 5.0);
  client.join();
  return answer;
}

TEST(Stop, ACallThatHangsIsAnswered) {
  REQUIRE_GROUND();
  Unit unit;
  const std::string answer = endedUnder(unit, hanging());
  EXPECT_THAT(answer, StartsWith("HTTP/1.1 200 "));
  EXPECT_THAT(answer, HasSubstr("<ERROR CODE=\"1\" DESCRIPTION=\"the server ends"));
}

TEST(Stop, ALoginThatHangsIsAnswered) {
  REQUIRE_GROUND();
  Unit unit({.stack = "auth optional pam_exec.so quiet /bin/sleep 60\nauth required pam_unix.so\n"
                      "account required pam_unix.so\n"});
  EXPECT_THAT(endedUnder(unit, namesOfClasses(credentials("reader", "secret"))), StartsWith("HTTP/1.1 503 "));
}

TEST(Stop, AnAnswerThatIsUnderWayIsGiven) {
  REQUIRE_GROUND();
  Unit unit;
  std::thread end;
  std::string answer;
  std::thread client([&] { answer = ask(unit.http(), instancesOf("CIM_ManagedElement"), 30); });
  std::this_thread::sleep_for(std::chrono::milliseconds(30));
  EXPECT_EQ(unit.stop(), 0);
  client.join();
  EXPECT_THAT(answer, StartsWith("HTTP/1.1 200 "));
}

TEST(Stop, ClientsThatSayNothingAndBodiesThatStopHalfWayAreNotWaitedFor) {
  REQUIRE_GROUND();
  Unit unit;
  std::string half = post(std::string(2000, ' '), "EnumerateClassNames");
  half.resize(half.size() - 1000);
  const OpenConnection silent(unit.http(), ""), stopped(unit.http(), half);
  std::this_thread::sleep_for(std::chrono::milliseconds(200));
  const auto begin = Clock::now();
  EXPECT_EQ(unit.stop(), 0);
  EXPECT_LT(Seconds(Clock::now() - begin).count(), 5.0);
}

/// A byte now and then stretches nothing.
TEST(Slow, ASenderByteByByteIsClosedWhenItsTimeIsUp) {
  REQUIRE_GROUND();
  const Unit unit({.settings = "[limits]\nrequest-seconds = 2\n"});
  const std::string whole = namesOfClasses();
  const std::size_t body = whole.find("\r\n\r\n") + 4;
  for (const std::size_t begun : {std::size_t{10}, body + 10}) {
    const OpenConnection slow(unit.http(), whole.substr(0, begun));
    const auto begin = Clock::now();
    for (std::size_t at = begun; !slow.isClosedWithin(0.1) && at < whole.size(); ++at)
      slow.sendByte(whole[at]);
    const double took = Seconds(Clock::now() - begin).count();
    EXPECT_GT(took, 1.0);
    EXPECT_LT(took, 5.0);
  }
  EXPECT_EQ(statusOf(ask(unit.http(), whole)), 200);
}

}  // namespace
}  // namespace ZebManager
