// Bounds that all clients share, and clients that take what they can of them.
#include <gmock/gmock.h>

#include <chrono>
#include <deque>
#include <fstream>
#include <thread>

#include "Attack.h"
#include "Ground.h"
#include "Unit.h"

namespace ZebManager {
namespace {

const std::string kReader = credentials("reader", "secret");

/// Half of a request with a body of so many bytes.
std::string half(std::size_t bytes, const std::string& moreHeaders = {}) {
  std::string request = post(std::string(bytes, ' '), "EnumerateClassNames", "root/jxv", moreHeaders);
  request.resize(request.size() - bytes / 2);
  return request;
}

class Bounds : public testing::Test {
 protected:
  void SetUp() override {
    REQUIRE_GROUND();
    unit.emplace(UnitOptions{.settings = "[limits]\nrequest-seconds = 60\n", .http = "*:0"});
    port = unit->http().substr(unit->http().rfind(':'));
    here = "127.0.0.1" + port;
    elsewhere = "192.0.2.1" + port;
  }

  void hold(int count, const std::string& bytes, const std::string& from) {
    for (int i = 0; i < count; ++i) held.emplace_back(here, bytes, from);
  }

  /// Somebody without a name, and users from here and from elsewhere.
  void expectAllAreServed() {
    EXPECT_EQ(statusOf(ask(here, namesOfClasses())), 200);
    expectUsersAreServed();
  }
  void expectUsersAreServed() {
    EXPECT_EQ(statusOf(ask(here, namesOfClasses(kReader))), 200);
    EXPECT_EQ(statusOf(ask(elsewhere, namesOfClasses(kReader))), 200);
    EXPECT_EQ(statusOf(ask(elsewhere, namesOfClasses(credentials("writer", "secret")))), 200);
  }

  std::optional<Unit> unit;
  std::string port, here, elsewhere;
  std::deque<OpenConnection> held;
};

TEST_F(Bounds, ConnectionsThatSayNothingShutNobodyOut) {
  for (const char* const from : {"127.0.0.2", "127.0.0.3", "127.0.0.4"}) hold(120, "", from);
  expectAllAreServed();
  hold(120, "POST / HTTP/1.1\r\nHost:", "127.0.0.5");
  expectAllAreServed();
}

TEST_F(Bounds, BodiesThatStopHalfWayLeaveUsersTheirShare) {
  hold(40, half(4 << 20), "127.0.0.2");
  expectUsersAreServed();
  const std::string large = call("EnumerateClassNames", "") + std::string(2 << 20, ' ');
  EXPECT_EQ(statusOf(ask(elsewhere,
                         post(large, "EnumerateClassNames", "root/jxv", kReader + "Connection: close\r\n"))),
            200);
}

TEST_F(Bounds, RequestsThatStopHalfWayLeaveUsersTheirShare) {
  for (const char* const from : {"127.0.0.2", "127.0.0.3", "127.0.0.4"}) hold(120, half(1000), from);
  expectUsersAreServed();
  held.clear();
  EXPECT_EQ(statusOf(ask(here, namesOfClasses())), 200) << "what they took comes back";
}

TEST_F(Bounds, AUserLeavesOthersTheirs) {
  ASSERT_EQ(statusOf(ask(here, namesOfClasses(kReader))), 200);  // known from now on, and judged no more
  hold(200, half(1000, kReader), "127.0.0.2");
  // Some of them may not have been read yet.
  int status = 200;
  for (int round = 0; round < 200 && status != 503; ++round)
    status = statusOf(ask(here, namesOfClasses(kReader)));
  EXPECT_EQ(status, 503);
  EXPECT_EQ(statusOf(ask(here, namesOfClasses())), 200);
  EXPECT_EQ(statusOf(ask(elsewhere, namesOfClasses(credentials("writer", "secret")))), 200);
}

/// All of them wait for the same judge, who takes a while.
TEST_F(Bounds, LoginsThatAreNotJudgedYetLeaveUsersTheirShare) {
  ASSERT_EQ(statusOf(ask(elsewhere, namesOfClasses(kReader))), 200);
  std::ofstream(unit->folder() / "pam/zebcim") << "auth optional pam_exec.so quiet /bin/sleep 5\n"
                                                  "auth required pam_unix.so\naccount required pam_unix.so\n";
  for (const char* const from : {"127.0.0.2", "127.0.0.3", "127.0.0.4"}) {
    hold(120, namesOfClasses(credentials("writer", "guess")), from);
  }
  EXPECT_EQ(statusOf(ask(elsewhere, namesOfClasses(kReader))), 200);
  EXPECT_EQ(statusOf(ask(here, namesOfClasses())), 200);
}

}  // namespace
}  // namespace ZebManager
