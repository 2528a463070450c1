// The real Prometheus, as a process of the test's own, with the rules and the dashboard that are installed.
#include <gmock/gmock.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <nlohmann/json.hpp>
#include <thread>

#include "Server.h"
#include "posix/Arguments.h"
#include "posix/TemporaryFolder.h"
#include "support/TestListener.h"

namespace ZebManager {
namespace {

using Json = nlohmann::json;

constexpr char kPrometheus[] = "/usr/bin/prometheus";

/// Scrapes a server every second.
class Prometheus {
 public:
  explicit Prometheus(const Server& server) : _address("127.0.0.1:" + std::to_string(freePort())) {
    std::ofstream(_folder / "prometheus.yml")
        << "global: {scrape_interval: 1s, evaluation_interval: 1s}\nrule_files: [" ZEB_RULES "]\n"
        << "scrape_configs: [{job_name: zeb, static_configs: [{targets: ['" << server.http() << "']}]}]\n";
    std::vector<std::string> arguments = {kPrometheus,
                                          "--config.file=" + (_folder / "prometheus.yml").string(),
                                          "--storage.tsdb.path=" + (_folder / "data").string(),
                                          "--web.listen-address=" + _address, "--log.level=error"};
    _process.emplace([&] {
      execv(kPrometheus, ZEB::argumentsOf(arguments).data());
      return 127;
    });
  }
  ~Prometheus() { _process->kill(SIGTERM); }

  /// What a query gives as soon as it gives something.
  Json resultOf(const std::string& query) const {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    Json result = Json::array();
    while (result.empty() && std::chrono::steady_clock::now() < end) {
      result = asked(query);
      if (result.empty()) std::this_thread::sleep_for(std::chrono::milliseconds(200));
    }
    return result;
  }

 private:
  Json asked(const std::string& query) const try {
    std::string escaped;
    for (const char c : query) {
      constexpr char kDigits[] = "0123456789ABCDEF";
      const auto byte = static_cast<unsigned char>(c);
      escaped += std::string("%") + kDigits[byte >> 4] + kDigits[byte & 15];
    }
    const std::string answer = ZebManager::exchange(
        _address, "GET /api/v1/query?query=" + escaped + " HTTP/1.0\r\nHost: localhost\r\n\r\n");
    const Json json = Json::parse(answer.substr(answer.find("\r\n\r\n") + 4));
    if (json["status"] != "success") ADD_FAILURE() << query << ": " << json;
    return json["data"]["result"];
  } catch (const std::exception&) {
    return Json::array();  // it does not listen yet
  }

  const ZEB::TemporaryFolder _folder{"zebcim-prometheus"};
  const std::string _address;
  std::optional<ZEB::ChildProcess> _process;
};

void replaceAll(std::string& text, const std::string& what, const std::string& by) {
  for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += by.size())
    text.replace(at, what.size(), by);
}

/// With what Grafana puts in the place of its variables.
std::string queryOf(std::string expression) {
  for (const char* const variable : {"$job", "$instance", "$team"}) replaceAll(expression, variable, ".*");
  replaceAll(expression, "$__rate_interval", "1m");
  return expression;
}

TEST(Prometheus, EveryQueryOfTheDashboardHasAnAnswerWithData) {
  if (access(kPrometheus, X_OK) != 0) GTEST_SKIP() << "Debian's prometheus is not installed";
  const Server server({"--source", ZEB_SNAPSHOTS "/teams.json"});
  const Prometheus prometheus(server);
  std::size_t count = 0;
  const Json dashboard = Json::parse(std::ifstream(ZEB_DASHBOARD));
  for (const Json& panel : dashboard["panels"]) {
    const Json targets = panel.value("targets", Json::array());
    for (const Json& target : targets) {
      const std::string query = queryOf(target["expr"]);
      EXPECT_FALSE(prometheus.resultOf(query).empty()) << panel["title"] << ": " << query;
      ++count;
    }
  }
  EXPECT_EQ(count, 21U);
}

/// eth3 of bond1 has no link, and one member is left.
TEST(Prometheus, ARuleSeesWhatIsWrongOnAServer) {
  if (access(kPrometheus, X_OK) != 0) GTEST_SKIP() << "Debian's prometheus is not installed";
  const Server server({"--source", ZEB_SNAPSHOTS "/teams.json"});
  const Prometheus prometheus(server);
  const Json failed = prometheus.resultOf("ALERTS{alertname=\"ZebTeamMemberFailed\"}");
  ASSERT_EQ(failed.size(), 1U);
  EXPECT_EQ(failed[0]["metric"]["team"], "bond1");
  EXPECT_EQ(failed[0]["metric"]["device"], "eth3");
  const Json lost = prometheus.resultOf("ALERTS{alertname=\"ZebTeamRedundancyLost\"}");
  ASSERT_EQ(lost.size(), 1U);
  EXPECT_EQ(lost[0]["metric"]["device"], "bond1");
}

}  // namespace
}  // namespace ZebManager
