// What the programs load.
#include <gmock/gmock.h>

#include "Process.h"

namespace ZebManager {
namespace {

using testing::HasSubstr;
using testing::Not;

/// Libraries that a server needs and that would make every other command start late.
constexpr const char* kOfTheServer[] = {"libcurl", "libgnutls", "libmicrohttpd", "libsqlite3"};
/// Whoever judges passwords is nobody else.
constexpr const char* kOfTheLogin = "libpam.";

TEST(Programs, TheServerAloneLoadsTheServersLibraries) {
  const Outcome command = run("/usr/bin/ldd", {ZEB_CIM});
  const Outcome server = run("/usr/bin/ldd", {ZEB_CIM_SERVER});
  EXPECT_EQ(command.status, 0) << command.err;
  EXPECT_EQ(server.status, 0) << server.err;
  for (const char* const library : kOfTheServer) {
    EXPECT_THAT(server.out, HasSubstr(library));
    EXPECT_THAT(command.out, Not(HasSubstr(library)));
  }
  const Outcome login = run("/usr/bin/ldd", {ZEB_CIM_LOGIN});
  EXPECT_EQ(login.status, 0) << login.err;
  EXPECT_THAT(login.out, HasSubstr(kOfTheLogin));
  EXPECT_THAT(server.out, Not(HasSubstr(kOfTheLogin)));
  EXPECT_THAT(command.out, Not(HasSubstr(kOfTheLogin)));
}

TEST(Programs, TheServerOnlyServes) {
  const Outcome outcome = run(ZEB_CIM_SERVER, {"classes"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err, "zebcim: this program can only serve\n");
}

}  // namespace
}  // namespace ZebManager
