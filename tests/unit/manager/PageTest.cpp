// What pages are told: events in order, what was missed, rates, and parts of the tree that changed.
#include <gmock/gmock.h>
#include <poll.h>

#include "cimxml/MessageNamespace.h"
#include "page/Events.h"
#include "page/PageTree.h"
#include "page/Rates.h"

namespace ZebManager {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

std::string taken(EventQueue& page) {
  std::string bytes;
  EXPECT_TRUE(page.takeInto(bytes));
  return bytes;
}

bool isReady(const EventQueue& page) {
  pollfd watched{page.ready(), POLLIN, 0};
  return poll(&watched, 1, 0) == 1;
}

/// The id that stands in an event.
std::string idIn(const std::string& event) {
  const std::size_t begin = event.find("id: ") + 4;
  return event.substr(begin, event.find('\n', begin) - begin);
}

TEST(Events, ReachEveryPageInOrder) {
  Events events;
  const auto one = std::make_shared<EventQueue>();
  const auto other = std::make_shared<EventQueue>();
  events.add(one);
  events.add(other);
  EXPECT_FALSE(isReady(*one));
  events.publish("alert", "{\"a\":1}");
  events.publish("rates", "[]");
  EXPECT_TRUE(isReady(*one));
  const std::string text = taken(*one);
  EXPECT_FALSE(isReady(*one));
  EXPECT_EQ(text,
            "id: " + idIn(text) + "\nevent: alert\ndata: {\"a\":1}\n\n" + text.substr(text.find("id: ", 4)));
  EXPECT_THAT(text.substr(text.find("id: ", 4)), HasSubstr("\nevent: rates\ndata: []\n\n"));
  EXPECT_EQ(taken(*other), text);
}

TEST(Events, CatchUpWithWhatWasMissed) {
  Events events;
  const auto before = std::make_shared<EventQueue>();
  events.add(before);
  events.publish("alert", "1");
  const std::string last = idIn(taken(*before));
  events.publish("alert", "2");
  events.publish("alert", "3");
  EventQueue back;
  EXPECT_TRUE(events.catchUp(back, last));
  const std::string missed = taken(back);
  EXPECT_THAT(missed, HasSubstr("data: 2\n"));
  EXPECT_THAT(missed, HasSubstr("data: 3\n"));
  EXPECT_THAT(missed, Not(HasSubstr("data: 1\n")));
  EventQueue upToDate;
  EXPECT_TRUE(events.catchUp(upToDate, idIn(missed.substr(missed.rfind("id: ")))));
  EXPECT_FALSE(isReady(upToDate));
}

TEST(Events, CannotCatchUpWithWhatIsNotKnown) {
  Events events;
  const auto page = std::make_shared<EventQueue>();
  events.add(page);
  events.publish("alert", "1");
  const std::string id = idIn(taken(*page));
  EventQueue back;
  const std::string run = id.substr(0, id.find('-') + 1);
  for (const std::string& other :
       {std::string(), std::string("x"), run, run + "2", run + "1x", run + "-1", "9" + id}) {
    EXPECT_FALSE(events.catchUp(back, other)) << other;
  }
  events.publish("state", std::string(3U << 20, 'x'));  // more than is kept
  events.publish("alert", "3");
  EXPECT_FALSE(events.catchUp(back, id));
  EXPECT_FALSE(isReady(back));
}

TEST(Events, EndForAPageThatDoesNotRead) {
  EventQueue page;
  const auto megabyte = std::make_shared<const std::string>(1U << 20, 'x');
  for (int i = 0; i < 16; ++i) page.add(megabyte);
  std::string bytes;
  EXPECT_TRUE(page.takeInto(bytes));
  EXPECT_EQ(bytes.size(), 16U << 20);
  for (int i = 0; i < 17; ++i) page.add(megabyte);
  bytes.clear();
  EXPECT_FALSE(page.takeInto(bytes));
  EXPECT_THAT(bytes, IsEmpty());
}

TEST(Events, CountOpenPages) {
  Events events;
  auto page = std::make_shared<EventQueue>();
  events.add(page);
  EXPECT_EQ(events.pages(), 1U);
  page.reset();
  EXPECT_EQ(events.pages(), 0U);
}

/// Nothing is associated with anything.
class Nothing : public MessageNamespace {
 public:
  using MessageNamespace::MessageNamespace;

 protected:
  std::string send(const std::string&) override {
    return R"(<CIM CIMVERSION="2.0" DTDVERSION="2.0"><MESSAGE ID="1" PROTOCOLVERSION="1.0"><SIMPLERSP>)"
           R"(<IMETHODRESPONSE NAME="EnumerateInstances"><IRETURNVALUE/></IMETHODRESPONSE>)"
           R"(</SIMPLERSP></MESSAGE></CIM>)";
  }
};

class RatesTest : public testing::Test {
 protected:
  const Rates::Clock::time_point begin{std::chrono::seconds(1000)};
  ClassRepository classes;
  Nothing model{classes};
  Rates rates{model};

  void take(double seconds, const std::vector<Rates::Values>& counters) {
    rates.take(counters, begin + std::chrono::milliseconds(static_cast<int>(seconds * 1000)));
  }
};

TEST_F(RatesTest, AreWhatCountersGrewByInASecond) {
  rates.follow({"one", "two"});
  EXPECT_EQ(rates.newest(), "[]");
  take(0, {{1000, 2000, 10, 20, 0}, {5, 5, 5, 5, 5}});
  EXPECT_EQ(rates.newest(), "[]");
  take(2, {{3000, 2500, 14, 21, 6}, {5, 5, 5, 5, 5}});
  // 2000 bytes, 500 bytes, 4, 1 and 6 in two seconds; a half is rounded up.
  EXPECT_EQ(rates.newest(), "[[0,1000,250,2,1,3]]");
  // The end of traffic is told once.
  take(4, {{3000, 2500, 14, 21, 6}, {5, 5, 5, 5, 5}});
  EXPECT_EQ(rates.newest(), "[[0,0,0,0,0,0]]");
  take(6, {{3000, 2500, 14, 21, 6}, {5, 5, 5, 5, 5}});
  EXPECT_EQ(rates.newest(), "[]");
  EXPECT_EQ(rates.history(), R"({"0":[[1000,250,2,1,3],[0,0,0,0,0],[0,0,0,0,0]]})");
}

TEST_F(RatesTest, AreNothingWhenCountersBeginAnew) {
  rates.follow({"one"});
  take(0, {{1000, 1000, 0, 0, 0}});
  take(1, {{10, 1010, 0, 0, 0}});
  EXPECT_EQ(rates.newest(), "[[0,0,10,0,0,0]]");
}

TEST_F(RatesTest, StayWithTheirPort) {
  rates.follow({"one", "two"});
  take(0, {{}, {}});
  take(1, {{}, {7, 0, 0, 0, 0}});
  rates.follow({"two"});
  EXPECT_EQ(rates.history(), R"({"0":[[7,0,0,0,0]]})");
}

TEST_F(RatesTest, OfThreeMinutesAreKept) {
  rates.follow({"one"});
  for (std::uint64_t i = 0; i <= 100; ++i) take(static_cast<double>(i), {{i, 0, 0, 0, 0}});
  const std::string history = rates.history();
  EXPECT_EQ(std::ranges::count(history, '['), 1 + 90);
}

Tree twoCards() {
  Tree tree;
  tree.host = "h";
  for (const char* const name : {"a", "b"}) {
    TreeCard card;
    card.path = std::string("card ") + name;
    TreePort port;
    port.path = std::string("port ") + name;
    port.name = name;
    card.ports.push_back(port);
    tree.cards.push_back(card);
  }
  return tree;
}

TEST(PageTree, TellsOnlyCardsThatChanged) {
  Tree tree = twoCards();
  const PageTree before = pageTree(tree, {});
  EXPECT_EQ(before.ports, (std::vector<std::string>{"port a", "port b"}));
  EXPECT_EQ(pageTree(tree, {}).changesSince(before), "");
  tree.cards[1].ports[0].mtu = 9000;
  const PageTree after = pageTree(tree, {});
  EXPECT_TRUE(after.hasShapeOf(before));
  const std::string changes = after.changesSince(before);
  EXPECT_THAT(changes, HasSubstr("\"mtu\":9000"));
  EXPECT_THAT(changes, Not(HasSubstr("card a")));
  EXPECT_THAT(changes, HasSubstr("\"teams\":[]"));
}

TEST(PageTree, SaysOfOtherEndsWhatIsKnown) {
  Tree tree = twoCards();
  TreeTeam& team = tree.teams.emplace_back();
  team.path = "team t";
  team.name = "t";
  for (const char* const port : {"a", "b"}) team.members.emplace_back().port = port;
  const PageTree unknown = pageTree(tree, {});
  EXPECT_THAT(unknown.json(), AllOf(Not(HasSubstr("partner")), Not(HasSubstr("lacp"))));
  // Synchronized at both ends, and defaulted at its own.
  const PageTree known =
      pageTree(tree, readPartners(R"({"ports":[{"name":"b","speed":1000000000,"fullDuplex":true},)"
                                  R"({"name":"no port","speed":1}],)"
                                  R"("teams":[{"name":"t","partner":"00:1c:73:00:00:01","members":[)"
                                  R"({"name":"a","actorState":61,"partnerState":61},)"
                                  R"({"name":"b","actorState":69,"partnerState":1}]},)"
                                  R"({"name":"other","members":[{"name":"b"}]}]})"));
  EXPECT_TRUE(known.hasShapeOf(unknown));
  const std::string changes = known.changesSince(unknown);
  EXPECT_THAT(changes, Not(HasSubstr("card a")));
  EXPECT_THAT(changes, HasSubstr(R"("partner":{"speed":1000000000,"fullDuplex":true}})"));
  EXPECT_THAT(changes, HasSubstr(R"("lacp":{"partner":"00:1c:73:00:00:01"}})"));
  EXPECT_THAT(changes, HasSubstr(R"("port":"a",)"));
  EXPECT_THAT(changes, HasSubstr(R"("lacp":{"partner":true,"synchronized":true}},{"port":"b")"));
  EXPECT_THAT(changes, HasSubstr(R"("lacp":{"partner":false,"synchronized":false}}])"));
  const PageTree silent = pageTree(tree, readPartners(R"({"teams":[{"name":"t"}]})"));
  EXPECT_THAT(silent.json(), HasSubstr(R"("lacp":{"partner":null}})"));
}

TEST(PageTree, HasAnotherShapeWhenAPortCame) {
  Tree tree = twoCards();
  const PageTree before = pageTree(tree, {});
  tree.cards[0].ports.emplace_back().path = "port c";
  EXPECT_FALSE(pageTree(tree, {}).hasShapeOf(before));
}

}  // namespace
}  // namespace ZebManager
