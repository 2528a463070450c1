// Delivery to listeners that do not answer, refuse, or answer something else.
#include <fstream>

#include "DeliveryFixture.h"

namespace ZebManager {
namespace {

using testing::Contains;
using testing::ElementsAre;

TEST_F(Deliveries, TakeAnAnswerThatNeverComesForAFailure) {
  settings.answerTimeout = 200ms;
  TestListener listener([](std::size_t number, const auto&) {
    if (number == 0) std::this_thread::sleep_for(600ms);
    return TestListener::acknowledgement();
  });
  start(listener.url());
  deliver(1, 1);
  ASSERT_TRUE(becomesEmpty());
  EXPECT_THAT(alertsIn(listener), Contains(1).Times(testing::Ge(2U)));
}

class Failures : public Deliveries, public testing::WithParamInterface<std::string> {};

TEST_P(Failures, AreTriedAgainInOrder) {
  TestListener listener([](std::size_t number, const auto&) {
    return number < 3 ? GetParam() : TestListener::acknowledgement();
  });
  start(listener.url());
  deliver(1, 2);
  ASSERT_TRUE(becomesEmpty());
  EXPECT_THAT(alertsIn(listener), ElementsAre(1, 1, 1, 1, 2));
}

INSTANTIATE_TEST_SUITE_P(
    Each, Failures,
    testing::Values(TestListener::response("503 Service Unavailable", ""),
                    TestListener::response("404 Not Found", "<html>nothing here</html>"),
                    TestListener::response("302 Found\r\nLocation: http://127.0.0.1:9/", ""),
                    TestListener::response("200 OK", "<html><body>a proxy</body></html>"),
                    TestListener::response("200 OK", "<CIM"),
                    TestListener::response("200 OK", std::string(70000, ' ')), "no HTTP at all\r\n\r\n",
                    TestListener::cimError()));

TEST_F(Deliveries, GoNowhereElseThanToTheirListener) {
  const TestListener elsewhere;
  TestListener listener([&](std::size_t number, const auto&) {
    return number == 0 ? TestListener::response("307 Temporary Redirect\r\nLocation: " + elsewhere.url(), "")
                       : TestListener::acknowledgement();
  });
  start(listener.url());
  deliver(1, 1);
  ASSERT_TRUE(becomesEmpty());
  EXPECT_THAT(alertsIn(elsewhere), testing::IsEmpty());
  EXPECT_THAT(alertsIn(listener), ElementsAre(1, 1));
}

/// An answer of which one part is much longer than any honest one.
std::string endless(const std::string& part) {
  constexpr char kChunked[] = "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n";
  if (part == "Body") return kChunked + std::string("40000\r\n") + std::string(0x40000, ' ');
  std::string text = part == "Head" ? "HTTP/1.1 200 OK\r\n" : kChunked + std::string("0\r\n");
  for (int i = 0; i < 50'000; ++i) text += "X-" + std::to_string(i) + ": " + std::string(20, 'x') + "\r\n";
  return text;
}

class EndlessAnswers : public Deliveries, public testing::WithParamInterface<const char*> {};

TEST_P(EndlessAnswers, AreNotReadToTheEnd) {
  TestListener listener([](std::size_t number, const auto&) {
    return number == 0 ? endless(GetParam()) : TestListener::acknowledgement();
  });
  start(listener.url());
  deliver(1, 1);
  EXPECT_TRUE(logs("its answer is too long; what is meant for it waits"));
  EXPECT_TRUE(becomesEmpty());
}

INSTANTIATE_TEST_SUITE_P(Each, EndlessAnswers, testing::Values("Head", "Trailers", "Body"),
                         [](const auto& tested) { return std::string(tested.param); });

TEST_F(Deliveries, AreAcknowledgedByAnEmptyAnswer) {
  TestListener listener([](std::size_t, const auto&) { return TestListener::response("200 OK", ""); });
  start(listener.url());
  deliver(1, 2);
  ASSERT_TRUE(becomesEmpty());
  EXPECT_THAT(alertsIn(listener), ElementsAre(1, 2));
}

TEST_F(Deliveries, GiveUpWhatAListenerRefusesForGood) {
  settings.mostRefusals = 3;
  TestListener listener([](std::size_t, const auto& request) {
    return alertIn(request) == 1 ? TestListener::cimError() : TestListener::acknowledgement();
  });
  start(listener.url());
  deliver(1, 2);
  ASSERT_TRUE(becomesEmpty());
  EXPECT_THAT(alertsIn(listener), ElementsAre(1, 1, 1, 2));
  EXPECT_TRUE(logs("not today"));
}

TEST_F(Deliveries, DropTheOldestWhenTooManyWait) {
  settings.mostWaiting = 3;
  settings.firstPause = settings.longestPause = 2s;
  const std::uint16_t port = freePort();
  start("http://127.0.0.1:" + std::to_string(port));
  deliver(1, 1);
  ASSERT_TRUE(logs("what is meant for it waits"));
  // Within the pause, so that none is on its way while it is dropped.
  deliver(2, 8);
  EXPECT_EQ(delivery->waiting(), 3U);
  EXPECT_TRUE(logs("is full with 3 indications"));
  TestListener listener([](std::size_t, const auto&) { return TestListener::acknowledgement(); }, port);
  ASSERT_TRUE(becomesEmpty());
  EXPECT_THAT(alertsIn(listener), ElementsAre(6, 7, 8));
  EXPECT_EQ(sequenceNumberIn(listener.requests()[0]), "5") << "the gap shows that some were dropped";
}

TEST_F(Deliveries, DropWhatHasWaitedTooLong) {
  settings.longestWait = 1s;
  const std::uint16_t port = freePort();
  start("http://127.0.0.1:" + std::to_string(port));
  deliver(1, 2);
  ASSERT_TRUE(logs("have waited for more than 1 s"));
  EXPECT_TRUE(becomesEmpty());
}

TEST_F(Deliveries, PauseLongerAfterEachFailure) {
  settings.firstPause = 50ms;
  settings.longestPause = 200ms;
  TestListener listener([](std::size_t number, const auto&) {
    return number < 5 ? TestListener::response("500 Internal Server Error", "")
                      : TestListener::acknowledgement();
  });
  start(listener.url());
  deliver(1, 1);
  ASSERT_TRUE(listener.waitFor(6));
  const auto requests = listener.requests();
  constexpr std::chrono::milliseconds kLeast[] = {50ms, 100ms, 200ms, 200ms, 200ms};
  for (std::size_t i = 0; i < 5; ++i)
    EXPECT_GE(requests[i + 1].arrival - requests[i].arrival, kLeast[i]) << i;
  EXPECT_LT(requests[5].arrival - requests[4].arrival, 2s);
}

TEST_F(Deliveries, BeginAnewAfterDamage) {
  start();
  delivery.reset();
  std::ofstream(directory / "delivery.db") << std::string(10000, 'x');
  TestListener listener;
  start(listener.url());
  EXPECT_TRUE(logs("is damaged"));
  EXPECT_TRUE(std::filesystem::exists(directory / "delivery.db.damaged-1"));
  deliver(1, 1);
  ASSERT_TRUE(listener.waitFor(1));
}

}  // namespace
}  // namespace ZebManager
