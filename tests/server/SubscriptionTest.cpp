// From a cable to a listener: what a console subscribes to comes once, in order, whatever goes away
// meanwhile.
#include <gmock/gmock.h>
#include <unistd.h>

#include <optional>

#include "CableRecording.h"
#include "Server.h"
#include "WbemClient.h"
#include "support/CableAlert.h"
#include "support/Console.h"
#include "support/TestListener.h"

namespace ZebManager {
namespace {

using testing::ElementsAre;
using Properties = std::map<std::string, std::string>;

constexpr char kWriter[] = "root:secret@";

std::string hostName() {
  char name[256] = {};
  gethostname(name, sizeof name - 1);
  return name;
}

/// One listener that always answers, by which the test knows that something has been noticed, and one that is
/// away now and then.
class SubscriptionTest : public testing::Test {
 protected:
  void SetUp() override {
    if (wbemClient().empty()) GTEST_SKIP() << "the package sblim-wbemcli is not installed";
    server = std::make_unique<Server>(std::vector<std::string>{"--source", file()}, settings());
    const Console made = console();
    made.makeFilter();
    listen();
    for (const auto& [name, url] : {std::pair("present", present.url()), std::pair("away", away->url())}) {
      made.makeListener(name, url);
      made.subscribe(name);
    }
  }

  /// More of the server's configuration.
  virtual std::string settings() const { return {}; }

  Console console() const {
    return {hostName(),
            [this](const std::string& operation, const std::string& object, const std::string& assignments) {
              Question question{.operation = operation, .object = object, .user = kWriter};
              if (!assignments.empty()) question.values = {assignments};
              const Outcome outcome = ask(*server, "http", question);
              EXPECT_EQ(outcome.status, 0) << operation << " " << object << ": " << outcome.err;
            }};
  }

  std::string file() const { return (folder / "cables.json").string(); }

  void listen() {
    away.emplace([](std::size_t, const auto&) { return TestListener::acknowledgement(); }, port);
  }
  /// Returns when the plug-in answers: what changes before it has looked is no change to it.
  void restart() {
    ASSERT_EQ(server->stop(), 0);
    server->start();
    ASSERT_EQ(ask(*server, "http", {"ein", "root/jxv:ZEB_EthernetPort"}).status, 0);
  }
  /// Returns when the server has said so.
  void setCable(bool in) {
    recording.setCable(in);
    ASSERT_TRUE(present.waitFor(++changes)) << "change " << changes << " is not reported";
  }
  void pullAndPutBack() {
    ASSERT_NO_FATAL_FAILURE(setCable(false));
    ASSERT_NO_FATAL_FAILURE(setCable(true));
  }

  static std::vector<ReceivedExport> received(const TestListener& listener) {
    std::vector<ReceivedExport> exports;
    for (const auto& request : listener.requests()) exports.push_back(readExport(request.body));
    return exports;
  }
  static std::vector<Properties> rounds(int count) {
    return roundsOfCable(
        {hostName(), 1, 1, 1, "PCI Express slot 3", "0503", "E12345-001", "link up, 1000 Mbit/s full duplex"},
        count);
  }

  const ZEB::TemporaryFolder folder;
  CableRecording recording{file()};
  std::unique_ptr<Server> server;
  const std::uint16_t port = freePort();
  TestListener present;
  std::optional<TestListener> away;
  std::size_t changes = 0;
};

TEST_F(SubscriptionTest, AListenerThatIsAwayMissesNothing) {
  ASSERT_NO_FATAL_FAILURE(pullAndPutBack());
  ASSERT_TRUE(away->waitFor(2));
  std::vector<ReceivedExport> got = received(*away);
  EXPECT_EQ(lasting(got), rounds(1));

  away.reset();
  ASSERT_NO_FATAL_FAILURE(pullAndPutBack());
  ASSERT_NO_FATAL_FAILURE(restart());
  ASSERT_NO_FATAL_FAILURE(pullAndPutBack());
  listen();
  ASSERT_TRUE(away->waitFor(4));
  // What came twice would come before these.
  ASSERT_NO_FATAL_FAILURE(pullAndPutBack());
  ASSERT_TRUE(away->waitFor(6));
  for (const ReceivedExport& each : received(*away)) got.push_back(each);
  EXPECT_EQ(lasting(got), rounds(4));
  EXPECT_THAT(places(got), ElementsAre(0, 1, 2, 3, 4, 5, 6, 7));
  EXPECT_EQ(lasting(received(present)), rounds(4));
  EXPECT_THAT(places(received(present)), ElementsAre(0, 1, 2, 3, 4, 5, 6, 7));
}

TEST_F(SubscriptionTest, WhoHasUnsubscribedGetsNothingMore) {
  ASSERT_NO_FATAL_FAILURE(pullAndPutBack());
  ASSERT_TRUE(away->waitFor(2));
  console().unsubscribe("away");
  ASSERT_NO_FATAL_FAILURE(pullAndPutBack());
  // What was sent in spite of that would come before what is sent from here on.
  console().subscribe("away");
  ASSERT_NO_FATAL_FAILURE(pullAndPutBack());
  ASSERT_TRUE(away->waitFor(4));
  EXPECT_EQ(lasting(received(*away)), rounds(2));
  EXPECT_EQ(lasting(received(present)), rounds(3));
  EXPECT_EQ(server->stop(), 0);
}

class ShortQueueTest : public SubscriptionTest {
 protected:
  std::string settings() const override {
    return "[delivery]\nmost-waiting = 1\nfirst-pause-milliseconds = 20\nlongest-pause-milliseconds = 50\n";
  }
};

TEST_F(ShortQueueTest, TheFileSaysHowManyAlertsWait) {
  away.reset();
  pullAndPutBack();
  listen();
  ASSERT_TRUE(away->waitFor(1));
  ASSERT_NO_FATAL_FAILURE(setCable(false));
  ASSERT_TRUE(away->waitFor(2));
  ASSERT_NO_FATAL_FAILURE(setCable(true));
  ASSERT_TRUE(away->waitFor(3));
  const std::vector<Properties> both = rounds(1);
  EXPECT_EQ(lasting(received(*away)), (std::vector<Properties>{both[1], both[0], both[1]}));
  EXPECT_THAT(places(received(*away)), ElementsAre(1, 2, 3));
}

}  // namespace
}  // namespace ZebManager
