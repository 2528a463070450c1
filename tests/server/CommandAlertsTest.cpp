// Alerts of a service that commands wait for.
#include <gmock/gmock.h>
#include <signal.h>

#include <fstream>
#include <optional>

#include "Process.h"
#include "Server.h"
#include "posix/TemporaryFolder.h"
#include "support/Content.h"

namespace ZebManager {
namespace {

using ZEB::test::contentOf;

/// A service of a host whose first cable is pulled three seconds later.
class Alerts : public testing::Test {
 protected:
  Outcome watch(std::vector<std::string> words, const SignalAfter& after = {}) const {
    words.insert(words.begin(), "watch");
    return run(ZEB_CIM, words,
               {"ZEB_CONFIG=/dev/null", "ZEB_STORE_DIR=/dev/null/none",
                "ZEB_RUN_DIR=" + (server->folder() / "run").string()},
               after);
  }

  void SetUp() override {
    std::string timeline = contentOf(ZEB_SNAPSHOTS "/failover_timeline.json");
    const auto at = timeline.find("\"at\": 1");
    ASSERT_NE(at, std::string::npos);
    timeline.replace(at, 7, "\"at\": 3").replace(timeline.find("\"at\": 2", at), 7, "\"at\": 4");
    std::ofstream(folder / "failover.json") << timeline;
    server.emplace(std::vector<std::string>{"--source", (folder / "failover.json").string()});
  }

  const ZEB::TemporaryFolder folder;
  std::optional<Server> server;
};

// eth0 of bond0 loses its link.
TEST_F(Alerts, OfTheServiceReachACommand) {
  const Outcome watched = watch({"--count", "3", "--for", "30", "--where", "PerceivedSeverity >= 5"});
  EXPECT_EQ(watched.status, 0);
  EXPECT_THAT(watched.err, StartsWith("zebcim: watching 6 ports and 3 teams of "));
  EXPECT_THAT(watched.out, HasSubstr("  eth0      Major        Ethernet connectivity lost: Ethernet port 1 "
                                     "on ethernet controller 1; no link  [PCI Express slot 3]\n"));
  EXPECT_EQ(std::ranges::count(watched.out, '\n'), 3);
}

TEST_F(Alerts, AreNotForAWrongCondition) {
  const Outcome own = watch({"--standalone", "--where", "Nothing = 1"});
  EXPECT_EQ(own.status, 1);
  EXPECT_EQ(watch({"--where", "Nothing = 1"}).err, own.err);
}

TEST_F(Alerts, ASignalEndsTheWait) {
  EXPECT_EQ(watch({}, {"watching", SIGINT}).status, 0);
}

TEST_F(Alerts, TheEndOfTheServiceEndsTheWait) {
  std::thread end([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
    server->stop();
  });
  const Outcome watched = watch({"--for", "30"});
  end.join();
  EXPECT_EQ(watched.status, 1);
  EXPECT_THAT(watched.err, testing::EndsWith("zebcim: the service has ended the connection\n"));
}

}  // namespace
}  // namespace ZebManager
