// From a cable to a listener: what a console subscribes to comes once, in order, whatever goes away
// meanwhile.
#include <gmock/gmock.h>
#include <unistd.h>

#include <fstream>
#include <nlohmann/json.hpp>
#include <optional>

#include "Server.h"
#include "WbemClient.h"
#include "support/CableAlert.h"
#include "support/TestListener.h"

namespace ZebHost {
namespace {

using Properties = std::map<std::string, std::string>;

constexpr char kWriter[] = "root:secret@";

std::string hostName() {
  char name[256] = {};
  gethostname(name, sizeof name - 1);
  return name;
}

/// A recorded machine with one port, whose cable the test pulls. What is played changes with the file.
class Recording {
 public:
  explicit Recording(std::filesystem::path file)
      : _file(std::move(file)), _host(nlohmann::json::parse(std::ifstream(ZEB_SNAPSHOTS "/one_port.json"))) {
    setCable(true);
  }
  Recording(const Recording&) = delete;
  Recording& operator=(const Recording&) = delete;
  ~Recording() { std::filesystem::remove(_file); }

  void setCable(bool in) {
    nlohmann::json& link = _host["links"][0];
    link["flags"] = in ? nlohmann::json{"UP", "LOWER_UP", "RUNNING"} : nlohmann::json{"UP"};
    link["carrier"] = in;
    link["operState"] = in ? "UP" : "DOWN";
    const std::filesystem::path whole = _file.string() + ".new";
    std::ofstream(whole) << _host;
    std::filesystem::rename(whole, _file);
  }

 private:
  std::filesystem::path _file;
  nlohmann::json _host;
};

/// What a console makes in root/interop.
class Console {
 public:
  explicit Console(const Server& server) : _server(server) {}

  void make(const std::string& className, const std::string& name, const std::string& properties) const {
    must({"ci", "root/interop:" + path(className, name), {keys(className, name) + properties}});
  }
  void subscribe(const std::string& listener) const {
    must({"ci", "root/interop:CIM_IndicationSubscription." + ends(listener), {ends(listener)}});
  }
  void unsubscribe(const std::string& listener) const {
    must({"di", "root/interop:CIM_IndicationSubscription." + ends(listener)});
  }

 private:
  static std::string keys(const std::string& className, const std::string& name) {
    return "SystemCreationClassName=\"ZEB_ComputerSystem\",SystemName=\"" + hostName() +
           "\",CreationClassName=\"" + className + "\",Name=\"" + name + "\"";
  }
  static std::string path(const std::string& className, const std::string& name) {
    return className + "." + keys(className, name);
  }
  static std::string ends(const std::string& listener) {
    return "Filter=root/interop:" + path("CIM_IndicationFilter", "cables") +
           ",Handler=root/interop:" + path("CIM_ListenerDestinationCIMXML", listener);
  }
  void must(Question question) const {
    question.user = kWriter;
    const Outcome outcome = ask(_server, "http", question);
    EXPECT_EQ(outcome.status, 0) << question.operation << " " << question.object;
    EXPECT_EQ(outcome.err, "") << question.operation << " " << question.object;
  }

  const Server& _server;
};

/// One listener that always answers, by which the test knows that something has been noticed, and one that is
/// away now and then.
class SubscriptionTest : public testing::Test {
 protected:
  void SetUp() override {
    if (wbemClient().empty()) GTEST_SKIP() << "the package sblim-wbemcli is not installed";
    server = std::make_unique<Server>(std::vector<std::string>{"--source", file()}, settings());
    const Console console(*server);
    console.make("CIM_IndicationFilter", "cables",
                 R"(,QueryLanguage="WQL",Query="SELECT * FROM ZEB_EthernetIndication")");
    listen();
    for (const auto& [name, url] : {std::pair("present", present.url()), std::pair("away", away->url())}) {
      console.make("CIM_ListenerDestinationCIMXML", name, ",Destination=\"" + url + "\"");
      console.subscribe(name);
    }
  }

  /// More of the server's configuration.
  virtual std::string settings() const { return {}; }

  static std::string file() { return testing::TempDir() + "cables-" + std::to_string(getpid()) + ".json"; }

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
  static std::vector<Properties> alerts(const TestListener& listener) {
    std::vector<Properties> all;
    for (const ReceivedExport& each : received(listener)) all.push_back(lasting(each));
    return all;
  }
  /// So many cables pulled and put back.
  static std::vector<Properties> rounds(int count) {
    const AlertedPort eth0{
        hostName(), 1, 1, 1, "PCI Express slot 3", "0503", "E12345-001", "link up, 1000 Mbit/s full duplex"};
    std::vector<Properties> all;
    for (; count > 0; --count) all.insert(all.end(), {cablePulled(eth0), cablePutBack(eth0)});
    return all;
  }
  /// Each number follows the one before, from `first`, in one sequence.
  static void expectSequence(const std::vector<ReceivedExport>& exports, int first) {
    for (const ReceivedExport& each : exports) {
      EXPECT_EQ(each["SequenceNumber"], std::to_string(first++));
      EXPECT_EQ(each["SequenceContext"], exports.front()["SequenceContext"]);
    }
  }

  Recording recording{file()};
  std::unique_ptr<Server> server;
  const std::uint16_t port = freePort();
  TestListener present;
  std::optional<TestListener> away;
  std::size_t changes = 0;
};

TEST_F(SubscriptionTest, AListenerThatIsAwayMissesNothing) {
  pullAndPutBack();
  ASSERT_TRUE(away->waitFor(2));
  EXPECT_EQ(alerts(*away), rounds(1));
  const std::vector<ReceivedExport> before = received(*away);
  expectSequence(before, 0);

  away.reset();
  pullAndPutBack();
  restart();
  pullAndPutBack();
  listen();
  ASSERT_TRUE(away->waitFor(4));
  EXPECT_EQ(alerts(*away), rounds(2));
  const std::vector<ReceivedExport> later = received(*away);
  expectSequence(later, 2);
  EXPECT_EQ(later.front()["SequenceContext"], before.front()["SequenceContext"]);

  // What came twice would have come before these.
  pullAndPutBack();
  ASSERT_TRUE(away->waitFor(6));
  EXPECT_EQ(alerts(*away), rounds(3));
  expectSequence(received(*away), 2);
  EXPECT_EQ(alerts(present), rounds(4));
  expectSequence(received(present), 0);
}

TEST_F(SubscriptionTest, WhoHasUnsubscribedGetsNothingMore) {
  pullAndPutBack();
  ASSERT_TRUE(away->waitFor(2));
  const Console console(*server);
  console.unsubscribe("away");
  pullAndPutBack();
  // What was sent in spite of that would come before what is sent from here on.
  console.subscribe("away");
  pullAndPutBack();
  ASSERT_TRUE(away->waitFor(4));
  EXPECT_EQ(alerts(*away), rounds(2));
  EXPECT_EQ(alerts(present), rounds(3));
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
  EXPECT_EQ(alerts(*away), (std::vector<Properties>{both[1], both[0], both[1]}));
  expectSequence(received(*away), 1);
}

}  // namespace
}  // namespace ZebHost
