// The page in a browser, as a client of HTTP sees it.
#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include "Process.h"
#include "Server.h"

namespace ZebManager {
namespace {

using nlohmann::json;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

std::string asked(const std::string& path, const std::string& more = {}, const std::string& method = "GET") {
  return method + " " + path + " HTTP/1.1\r\nHost: localhost\r\nConnection: close\r\n" + more + "\r\n";
}

std::string bodyOf(const std::string& answer) {
  return answer.substr(answer.find("\r\n\r\n") + 4);
}

/// The bytes of a body that came in chunks.
std::string joined(std::string_view chunks) {
  std::string bytes;
  for (std::size_t end = chunks.find("\r\n"); end != std::string_view::npos; end = chunks.find("\r\n")) {
    const std::size_t size = std::stoul(std::string(chunks.substr(0, end)), nullptr, 16);
    if (size == 0 || chunks.size() < end + 2 + size) break;
    bytes += chunks.substr(end + 2, size);
    chunks.remove_prefix(std::min(chunks.size(), end + 2 + size + 2));
  }
  return bytes;
}

/// For what follows a question mark.
std::string escaped(const std::string& text) {
  std::string escaped;
  for (const unsigned char c : text) {
    char code[4];
    std::snprintf(code, sizeof code, "%%%02X", c);
    escaped += code;
  }
  return escaped;
}

/// A tree without what no class says and the page alone shows.
json withoutPartners(json tree) {
  if (tree.is_object()) {
    tree.erase("partner");
    tree.erase("lacp");
  }
  for (auto& part : tree) {
    if (part.is_structured()) part = withoutPartners(part);
  }
  return tree;
}

struct Event {
  std::string id, name;
  json data;
};

class PageTest : public testing::Test {
 protected:
  static std::string recording(const std::string& name) { return ZEB_SNAPSHOTS "/" + name + ".json"; }

  void play(const std::string& name) {
    server.emplace(std::vector<std::string>{"--source", recording(name)});
  }

  std::string ask(const std::string& path, const std::string& more = {},
                  const std::string& method = "GET") const {
    return ZebManager::exchange(server->http(), asked(path, more, method));
  }

  /// Asked for until it is known.
  json explained(const std::string& path) const {
    std::string answer;
    for (int tries = 0; tries < 60; ++tries) {
      answer = ask("/explain?path=" + escaped(path));
      if (!answer.starts_with("HTTP/1.1 202 ")) break;
    }
    return json::parse(bodyOf(answer));
  }

  /// The events of some seconds.
  std::vector<Event> events(double seconds, const std::string& more = {}) const {
    std::vector<Event> all;
    std::string text = joined(bodyOf(ZebManager::exchange(server->http(), asked("/events", more), seconds)));
    for (std::size_t end = text.find("\n\n"); end != std::string::npos; end = text.find("\n\n")) {
      const std::string one = text.substr(0, end + 1);
      text.erase(0, end + 2);
      const auto field = [&](const std::string& name) {
        const std::size_t at = one.find(name + ": ");
        if (at == std::string::npos) return std::string();
        const std::size_t begin = at + name.size() + 2;
        return one.substr(begin, one.find('\n', begin) - begin);
      };
      if (!field("event").empty()) all.push_back({field("id"), field("event"), json::parse(field("data"))});
    }
    return all;
  }

  static std::vector<Event> named(const std::string& name, std::vector<Event> events) {
    std::erase_if(events, [&](const Event& event) { return event.name != name; });
    return events;
  }

  std::optional<Server> server;
};

TEST_F(PageTest, IsServedUnderAStrictPolicy) {
  play("two_cards");
  const std::string page = ask("/");
  EXPECT_THAT(
      page,
      AllOf(StartsWith("HTTP/1.1 200 "), HasSubstr("Content-Type: text/html; charset=utf-8\r\n"),
            HasSubstr("Content-Security-Policy: default-src 'none'; script-src 'self'; style-src 'self';"),
            HasSubstr("frame-ancestors 'none'"), HasSubstr("X-Content-Type-Options: nosniff\r\n"),
            HasSubstr("<script type=\"module\" src=\"page.js\"></script>")));
  EXPECT_THAT(ask("/page.js"), AllOf(StartsWith("HTTP/1.1 200 "),
                                     HasSubstr("Content-Type: text/javascript; charset=utf-8\r\n")));
  EXPECT_THAT(ask("/style.css"), HasSubstr("Content-Type: text/css; charset=utf-8\r\n"));
  EXPECT_THAT(ask("/icon.svg"), HasSubstr("Content-Type: image/svg+xml\r\n"));
  EXPECT_THAT(ask("/index.html"), StartsWith("HTTP/1.1 404 "));
  EXPECT_THAT(ask("/../page.js"), StartsWith("HTTP/1.1 404 "));
  EXPECT_THAT(ask("/page.js", {}, "PUT"), StartsWith("HTTP/1.1 405 "));
  EXPECT_THAT(ask("/events", {}, "DELETE"), StartsWith("HTTP/1.1 405 "));
}

TEST_F(PageTest, BeginsWithTheTreeThatTheCommandPrints) {
  for (const std::string name : {"two_cards", "teams", "on_board", "bare_port", "one_port", "empty"}) {
    play(name);
    const auto all = events(1.5);
    ASSERT_FALSE(all.empty()) << name;
    EXPECT_EQ(all[0].name, "state");
    const auto printed =
        run(ZEB_CIM, {"--plugin", ZEB_REAL_PLUGIN, "--source", recording(name), "--json", "tree"});
    EXPECT_EQ(withoutPartners(all[0].data["tree"]), json::parse(printed.out)) << name;
    EXPECT_EQ(all[0].data["source"], recording(name));
  }
}

/// bond0 loses eth0, which is active, after a second and has it back after another.
TEST_F(PageTest, TellsAlertsAndWhatTheyChanged) {
  play("failover_timeline");
  const auto all = events(5);
  const auto alerts = named("alert", all);
  ASSERT_FALSE(alerts.empty());
  const auto lost = std::ranges::find_if(
      alerts, [](const Event& alert) { return alert.data["summary"] == "Ethernet connectivity lost"; });
  ASSERT_NE(lost, alerts.end());
  EXPECT_FALSE(lost->data["advice"].empty());
  EXPECT_NE(lost->data["severity"]["text"], "");
  // Once with the status without a link, and once with that of before.
  std::vector<int> codes;
  for (const Event& change : named("change", all)) {
    if (change.data["path"] == lost->data["path"]) codes.push_back(change.data["set"]["status"]["code"]);
  }
  EXPECT_THAT(codes, testing::Contains(6));
  EXPECT_EQ(codes.back(), 2);
}

TEST_F(PageTest, KeepsAlertsForPagesThatComeLater) {
  play("failover_timeline");
  const auto before = named("alert", events(4.5));
  const auto later = events(1);
  ASSERT_FALSE(later.empty());
  EXPECT_EQ(later[0].data["alerts"].size(), before.size());
  EXPECT_EQ(later[0].data["alerts"][0], before.back().data);
}

TEST_F(PageTest, CatchesUpWithWhatWasMissed) {
  play("two_cards");
  const OpenConnection stays(server->http(), asked("/events"));
  const auto before = events(3);
  ASSERT_GE(before.size(), 2U);
  EXPECT_EQ(before[0].name, "state");
  const auto back = events(3, "Last-Event-ID: " + before[0].id + "\r\n");
  ASSERT_FALSE(back.empty());
  EXPECT_EQ(back[0].id, before[1].id);
  EXPECT_EQ(back[0].name, before[1].name);
  EXPECT_EQ(events(1, "Last-Event-ID: nonsense\r\n").at(0).name, "state");
}

TEST_F(PageTest, ShowsAnInstanceInWords) {
  play("two_cards");
  const json state = events(1.5).at(0).data;
  const std::string path = state["tree"]["cards"][0]["ports"][0]["path"];
  const json port = json::parse(bodyOf(ask("/instance?path=" + escaped(path))));
  EXPECT_EQ(port["class"], "ZEB_EthernetPort");
  EXPECT_EQ(port["path"], path);
  const auto property = [&](const char* name) {
    for (const json& one : port["properties"]) {
      if (one["name"] == name) return one;
    }
    return json();
  };
  EXPECT_EQ(property("DeviceID")["key"], true);
  EXPECT_EQ(property("OperationalStatus")["words"], json({"OK"}));
  EXPECT_EQ(property("PortNumber")["value"], "1");
  EXPECT_THAT(port["associations"].dump(), HasSubstr("ZEB_EthernetPortToLANEndpoint"));
  EXPECT_THAT(port["associations"].dump(), Not(HasSubstr("\"path\":\"" + path)));
}

TEST_F(PageTest, SaysWhyValuesAreWhatTheyAre) {
  play("one_port");
  const json state = events(1.5).at(0).data;
  const std::string path = state["tree"]["cards"][0]["ports"][0]["path"];
  const json why = explained(path);
  EXPECT_EQ(why["path"], path);
  EXPECT_THAT(why.dump(), HasSubstr("RTM_NEWLINK IFLA_MTU"));
  EXPECT_THAT(ask("/explain?path=--help"), StartsWith("HTTP/1.1 404 "));
}

/// It is ended with the server, and leaves nothing.
TEST_F(PageTest, DoesNotWaitForAnExplanationAtItsEnd) {
  const ZEB::TemporaryFolder temporary;
  setenv("TMPDIR", temporary.path().c_str(), 1);
  play("two_cards");
  unsetenv("TMPDIR");
  const std::string path = "ZEB_EthernetStatistics.InstanceID=\"JXV:ZEB_EthernetStatistics:1\"";
  const std::size_t before = server->children().size();
  ZebManager::exchange(server->http(), asked("/explain?path=" + escaped(path)), 0.2);
  EXPECT_GT(server->children().size(), before);
  const auto start = std::chrono::steady_clock::now();
  server->stop();
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
  for (const auto& left : std::filesystem::directory_iterator(temporary.path()))
    EXPECT_THAT(left.path().filename().string(), Not(HasSubstr("explain")));
}

TEST_F(PageTest, SaysWhenThereIsNoSuchInstance) {
  play("two_cards");
  for (const char* const path : {"/instance", "/instance?path=", "/instance?path=%3Cscript%3E",
                                 "/instance?path=ZEB_EthernetPort.DeviceID=%22x%22"}) {
    const std::string answer = ask(path);
    EXPECT_THAT(answer, AllOf(StartsWith("HTTP/1.1 404 "), HasSubstr("Content-Type: application/json\r\n")))
        << path;
    EXPECT_NE(json::parse(bodyOf(answer))["error"], "");
  }
}

}  // namespace
}  // namespace ZebManager
