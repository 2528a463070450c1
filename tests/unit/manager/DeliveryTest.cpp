// Delivery to a listener on the loopback: in order, until it is acknowledged, across restarts.
#include <map>

#include "DeliveryFixture.h"
#include "values/ManagerError.h"

namespace ZebManager {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

TEST_F(Deliveries, ComeInOrderAndOnce) {
  TestListener listener;
  start(listener.url());
  deliver(1, 50);
  ASSERT_TRUE(listener.waitFor(50));
  ASSERT_TRUE(becomesEmpty());
  const auto requests = listener.requests();
  ASSERT_EQ(requests.size(), 50U);
  for (int i = 0; i < 50; ++i) {
    EXPECT_EQ(alertIn(requests[static_cast<std::size_t>(i)]), i + 1);
    EXPECT_EQ(sequenceNumberIn(requests[static_cast<std::size_t>(i)]), std::to_string(i));
    EXPECT_EQ(contextIn(requests[static_cast<std::size_t>(i)]), contextIn(requests[0]));
  }
  EXPECT_THAT(contextIn(requests[0]), Not(IsEmpty()));
  EXPECT_THAT(log(), IsEmpty());
}

TEST_F(Deliveries, AreExportsAsListenersKnowThem) {
  TestListener listener;
  start(listener.url());
  deliver(1, 1);
  ASSERT_TRUE(listener.waitFor(1)) << testing::PrintToString(log());
  const auto request = listener.requests()[0];
  EXPECT_THAT(request.head, testing::StartsWith("POST /alerts HTTP/1.1"));
  EXPECT_THAT(request.head, HasSubstr("Content-Type: application/xml; charset=\"utf-8\""));
  EXPECT_THAT(request.head, HasSubstr("CIMExport: MethodRequest"));
  EXPECT_THAT(request.head, HasSubstr("CIMExportMethod: ExportIndication"));
  EXPECT_THAT(request.body, HasSubstr("<EXPMETHODCALL NAME=\"ExportIndication\">"));
  EXPECT_THAT(request.body,
              HasSubstr("<EXPPARAMVALUE NAME=\"NewIndication\"><INSTANCE CLASSNAME=\"A_Alert\">"));
}

TEST_F(Deliveries, GoOnlyToThoseWhoWantThem) {
  TestListener first;
  TestListener second;
  start();
  delivery->setSubscriptions({subscription("f", "h1", first.url()), subscription("g", "h2", second.url())});
  delivery->deliver({"f"}, alert(1));
  delivery->deliver({"g"}, alert(2));
  delivery->deliver({"f", "g"}, alert(3));
  delivery->deliver({"other"}, alert(4));
  delivery->deliver({}, alert(5));
  ASSERT_TRUE(first.waitFor(2) && second.waitFor(2));
  ASSERT_TRUE(becomesEmpty());
  EXPECT_THAT(alertsIn(first), ElementsAre(1, 3));
  EXPECT_THAT(alertsIn(second), ElementsAre(2, 3));
  EXPECT_NE(contextIn(first.requests()[0]), contextIn(second.requests()[0]));
}

TEST_F(Deliveries, CarryWhatTheirFilterSelects) {
  TestListener all;
  TestListener none;
  start();
  Subscription narrow = subscription("g", "h2", none.url());
  narrow.properties = {"Other"};
  delivery->setSubscriptions({subscription("f", "h1", all.url()), narrow});
  delivery->deliver({"f", "g"}, alert(1));
  ASSERT_TRUE(all.waitFor(1) && none.waitFor(1));
  EXPECT_EQ(alertIn(all.requests()[0]), 1);
  EXPECT_EQ(alertIn(none.requests()[0]), -1);
  EXPECT_EQ(sequenceNumberIn(none.requests()[0]), "0");
}

TEST_F(Deliveries, WaitForAListenerThatIsAway) {
  const std::uint16_t port = freePort();
  start("http://127.0.0.1:" + std::to_string(port));
  deliver(1, 5);
  ASSERT_TRUE(logs("what is meant for it waits"));
  EXPECT_EQ(delivery->waiting(), 5U);
  TestListener listener([](std::size_t, const auto&) { return TestListener::acknowledgement(); }, port);
  ASSERT_TRUE(becomesEmpty());
  EXPECT_THAT(alertsIn(listener), ElementsAre(1, 2, 3, 4, 5));
  EXPECT_TRUE(logs("answers again"));
  EXPECT_EQ(log().size(), 2U) << "one line when it goes, one when it comes";
}

TEST_F(Deliveries, SurviveARestart) {
  const std::uint16_t port = freePort();
  const std::string url = "http://127.0.0.1:" + std::to_string(port);
  start(url);
  deliver(1, 3);
  delivery.reset();
  start();
  EXPECT_EQ(delivery->waiting(), 3U);
  TestListener listener([](std::size_t, const auto&) { return TestListener::acknowledgement(); }, port);
  delivery->setSubscriptions({subscription("f", "h", url)});
  deliver(4, 4);
  ASSERT_TRUE(listener.waitFor(4));
  ASSERT_TRUE(becomesEmpty());
  EXPECT_THAT(alertsIn(listener), ElementsAre(1, 2, 3, 4));
  EXPECT_EQ(sequenceNumberIn(listener.requests()[3]), "3");
  EXPECT_EQ(contextIn(listener.requests()[3]), contextIn(listener.requests()[0]));
  delivery.reset();
  start(url);
  deliver(5, 5);
  ASSERT_TRUE(listener.waitFor(5));
  EXPECT_EQ(sequenceNumberIn(listener.requests()[4]), "4") << "an empty queue does not begin a sequence anew";
}

TEST_F(Deliveries, RepeatTheSameNumberWhenAnAcknowledgementIsLost) {
  TestListener listener([](std::size_t number, const auto&) {
    return number == 0 ? std::string() : TestListener::acknowledgement();
  });
  start(listener.url());
  deliver(1, 2);
  ASSERT_TRUE(listener.waitFor(3));
  ASSERT_TRUE(becomesEmpty());
  EXPECT_THAT(alertsIn(listener), ElementsAre(1, 1, 2));
  EXPECT_EQ(sequenceNumberIn(listener.requests()[0]), "0");
  EXPECT_EQ(sequenceNumberIn(listener.requests()[1]), "0");
  EXPECT_EQ(sequenceNumberIn(listener.requests()[2]), "1");
}

TEST_F(Deliveries, DoNotWaitForASlowListener) {
  constexpr auto kSlow = 3s;
  settings.answerTimeout = 2 * kSlow;
  TestListener slow([&](std::size_t, const auto&) {
    std::this_thread::sleep_for(kSlow);
    return TestListener::acknowledgement();
  });
  TestListener quick;
  start();
  delivery->setSubscriptions(
      {subscription("f", "slow", slow.url()), subscription("f", "quick", quick.url())});
  const auto begin = std::chrono::steady_clock::now();
  deliver(1, 20);
  ASSERT_TRUE(quick.waitFor(20));
  EXPECT_LT(std::chrono::steady_clock::now() - begin, kSlow);
  EXPECT_LE(slow.requests().size(), 1U) << "one at a time";
  const auto end = std::chrono::steady_clock::now();
  delivery.reset();
  EXPECT_LT(std::chrono::steady_clock::now() - end, kSlow) << "the end waits for nobody";
}

TEST_F(Deliveries, EndWithTheirSubscription) {
  settings.firstPause = settings.longestPause = 2s;
  const std::uint16_t port = freePort();
  const std::string url = "http://127.0.0.1:" + std::to_string(port);
  start();
  delivery->setSubscriptions({subscription("f", "h", url), subscription("g", "h", url)});
  delivery->deliver({"f"}, alert(1));
  ASSERT_TRUE(logs("what is meant for it waits"));
  // Within the pause, so that it is not on its way when its subscription ends.
  delivery->deliver({"g"}, alert(2));
  delivery->setSubscriptions({subscription("g", "h", url)});
  EXPECT_EQ(delivery->waiting(), 1U);
  delivery->deliver({"f"}, alert(3));
  TestListener listener([](std::size_t, const auto&) { return TestListener::acknowledgement(); }, port);
  ASSERT_TRUE(becomesEmpty());
  EXPECT_THAT(alertsIn(listener), ElementsAre(2));
  delivery->setSubscriptions({});
  delivery->deliver({"g"}, alert(4));
  EXPECT_EQ(delivery->waiting(), 0U);
}

TEST_F(Deliveries, EndWithTheirTime) {
  TestListener listener;
  start();
  Subscription over = subscription("f", "h", listener.url());
  over.end = BootClock::now() - 1s;
  delivery->setSubscriptions({over});
  deliver(1, 1);
  EXPECT_EQ(delivery->waiting(), 0U);
  over.end = BootClock::now() + 1h;
  delivery->setSubscriptions({over});
  deliver(2, 2);
  ASSERT_TRUE(listener.waitFor(1));
  EXPECT_THAT(alertsIn(listener), ElementsAre(2));
}

TEST_F(Deliveries, FollowAListenerThatMoves) {
  settings.firstPause = settings.longestPause = 1h;
  start("http://127.0.0.1:" + std::to_string(freePort()));
  deliver(1, 1);
  ASSERT_TRUE(logs("waits"));
  TestListener listener;
  delivery->setSubscriptions({subscription("f", "h", listener.url())});
  ASSERT_TRUE(listener.waitFor(1)) << "a new address is tried at once";
}

TEST_F(Deliveries, GoOnWithoutADirectory) {
  settings.directory = "/proc/nothing";
  TestListener listener;
  start(listener.url());
  EXPECT_THAT(log(), testing::Contains(testing::HasSubstr("what should be in it is not kept")));
  deliver(1, 3);
  ASSERT_TRUE(becomesEmpty());
  EXPECT_THAT(alertsIn(listener), testing::ElementsAre(1, 2, 3));
}

TEST_F(Deliveries, ComeFromSeveralThreads) {
  TestListener listener;
  start(listener.url());
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) threads.emplace_back([this, t] { deliver(t * 10, t * 10 + 9); });
  for (std::thread& thread : threads) thread.join();
  ASSERT_TRUE(becomesEmpty());
  EXPECT_THAT(alertsIn(listener), testing::SizeIs(40));
  const auto requests = listener.requests();
  std::map<int, int> last;
  for (std::size_t i = 0; i < requests.size(); ++i) {
    EXPECT_EQ(sequenceNumberIn(requests[i]), std::to_string(i));
    const int number = alertIn(requests[i]);
    const auto seen = last.find(number / 10);
    EXPECT_TRUE(seen == last.end() || seen->second < number);
    last[number / 10] = number;
  }
}

}  // namespace
}  // namespace ZebManager
