// The measurement of a fleet, with the real Prometheus and Alertmanager: three servers, for some seconds.
#include <gmock/gmock.h>
#include <unistd.h>

#include <fstream>
#include <nlohmann/json.hpp>

#include "Process.h"
#include "Server.h"
#include "posix/TemporaryFolder.h"

namespace ZebManager {
namespace {

using Json = nlohmann::json;
using testing::AllOf;
using testing::Each;
using testing::Ge;
using testing::Gt;
using testing::IsEmpty;
using testing::Lt;
using testing::SizeIs;
using Seconds = std::vector<double>;

TEST(Fleet, IsMeasuredFromEveryServerToTheAlertsOfEveryCable) {
  for (const char* const program :
       {"/usr/bin/prometheus", "/usr/bin/prometheus-alertmanager", "/usr/bin/python3"}) {
    if (access(program, X_OK) != 0) GTEST_SKIP() << program << " is not installed";
  }
  const ZEB::TemporaryFolder folder("zebcim-fleet");
  const std::string file = (folder / "figures.json").string();
  constexpr std::size_t kServers = 3;
  constexpr double kHold = 8;
  const Outcome outcome =
      run("/usr/bin/python3", {ZEB_FLEET, "--servers", "3", "--rounds", "1", "--hold", "8", "--interval", "1",
                               "--window", "3", "--zebcim", ZEB_CIM, "--plugin", ZEB_REAL_PLUGIN, file});
  ASSERT_EQ(outcome.status, 0) << outcome.err;
  const Json figures = Json::parse(std::ifstream(file));
  EXPECT_THAT(figures["scraped_percent"].get<Seconds>(), AllOf(SizeIs(kServers), Each(Gt(0))));
  EXPECT_THAT(figures["rest_mib"].get<Seconds>(), AllOf(SizeIs(kServers), Each(Gt(1))));
  EXPECT_THAT(figures["scrape_seconds"].get<Seconds>(), AllOf(SizeIs(Ge(kServers)), Each(Lt(1))));
  EXPECT_GT(figures["scrape_bytes"], 2 * figures["scrape_gzip_bytes"].get<int>());
  EXPECT_GE(figures["series"], kServers * figures["scrape_series"].get<std::size_t>());
  for (const char* const way : {"straight_port", "straight_team", "rule_team"}) {
    EXPECT_THAT(figures["delays"][way].get<Seconds>(), AllOf(SizeIs(kServers), Each(AllOf(Gt(0), Lt(kHold)))))
        << way;
  }
  // Its rule waits for longer than a cable is out here.
  EXPECT_THAT(figures["delays"]["rule_port"].get<Seconds>(), IsEmpty());
}

}  // namespace
}  // namespace ZebManager
