// From a cable of the server to a listener, through a subscription.
#include <gmock/gmock.h>

#include <filesystem>
#include <optional>

#include "GuestFixture.h"
#include "GuestListener.h"
#include "GuestServer.h"
#include "support/CableAlert.h"
#include "support/Console.h"

namespace ZEB::guest {
namespace {

using testing::ElementsAre;
using ZebManager::lasting;

constexpr int kPresentPort = 8081, kAwayPort = 8082;

/// One listener that always answers, by which the test knows that something has been noticed, and one that is
/// away now and then.
class SubscriptionTest : public GuestFixture {
 protected:
  void SetUp() override {
    if (!std::filesystem::exists("/usr/bin/wbemcli"))
      GTEST_SKIP() << "the package sblim-wbemcli is not installed";
    GuestFixture::SetUp();
    bringUp({"slot3b"});
    server.emplace(guest());
    present.emplace(guest(), "present", kPresentPort);
    away.emplace(guest(), "away", kAwayPort);
    const ZebManager::Console console("guest", wbemcli);
    console.makeFilter();
    console.makeListener("present", present->url());
    console.makeListener("away", away->url());
    console.subscribe("present");
    console.subscribe("away");
  }
  void TearDown() override {
    away.reset();
    present.reset();
    server.reset();
  }

  static void wbemcli(const std::string& operation, const std::string& object,
                      const std::string& assignments) {
    guest().must("wbemcli " + operation + " 'http://root:secret@" + GuestServer::kAddress + "/" + object +
                 "' '" + assignments + "'");
  }
  /// Returns when the server has said so.
  void setCable(bool in) {
    guest().setLink("slot3b", in);
    ASSERT_TRUE(present->waitFor(++changes)) << "change " << changes << " is not reported";
  }
  void pullAndPutBack() {
    ASSERT_NO_FATAL_FAILURE(setCable(false));
    ASSERT_NO_FATAL_FAILURE(setCable(true));
  }
  /// Port 2 of the card in slot 3, which is controller 6: the board and its cards come first. None of the
  /// emulated cards has a part number.
  static auto rounds(int count) {
    return ZebManager::roundsOfCable(
        {"guest", 7, 6, 2, "PCI Express slot 3", "0503", "", "link up, 1000 Mbit/s full duplex"}, count);
  }

  std::optional<GuestServer> server;
  std::optional<GuestListener> present, away;
  std::size_t changes = 0;
};

TEST_F(SubscriptionTest, APulledCableReachesAListenerThatIsAway) {
  ASSERT_NO_FATAL_FAILURE(pullAndPutBack());
  ASSERT_TRUE(away->waitFor(2));
  std::vector<ZebManager::ReceivedExport> got = away->received();
  EXPECT_EQ(lasting(got), rounds(1));

  away.reset();
  ASSERT_NO_FATAL_FAILURE(pullAndPutBack());
  server->restart();
  // What changes before the plug-in has looked is no change to it.
  guest().must(std::string("wbemcli ein 'http://") + GuestServer::kAddress + "/root/jxv:ZEB_EthernetPort'");
  ASSERT_NO_FATAL_FAILURE(pullAndPutBack());
  away.emplace(guest(), "back", kAwayPort);
  ASSERT_TRUE(away->waitFor(4));
  // What came twice would come before these.
  ASSERT_NO_FATAL_FAILURE(pullAndPutBack());
  ASSERT_TRUE(away->waitFor(6));
  for (const ZebManager::ReceivedExport& each : away->received()) got.push_back(each);
  EXPECT_EQ(lasting(got), rounds(4));
  EXPECT_THAT(places(got), ElementsAre(0, 1, 2, 3, 4, 5, 6, 7));
  EXPECT_EQ(lasting(present->received()), rounds(4));
}

}  // namespace
}  // namespace ZEB::guest
