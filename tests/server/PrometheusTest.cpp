// The real Prometheus, as a process of the test's own, with the rules and the dashboard that are installed.
#include <gmock/gmock.h>
#include <unistd.h>

#include <fstream>
#include <nlohmann/json.hpp>

#include "RealPrometheus.h"
#include "Server.h"

namespace ZebManager {
namespace {

using Json = nlohmann::json;

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
  const RealPrometheus prometheus(server.http());
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
  const RealPrometheus prometheus(server.http());
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
