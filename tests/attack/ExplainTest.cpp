// Where values come from is found out by a server that may not ask the kernel itself.
#include <gmock/gmock.h>

#include <cstdlib>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "Attack.h"
#include "Ground.h"
#include "Unit.h"

namespace ZebManager {
namespace {

using nlohmann::json;

class UnitExplains : public testing::Test {
 protected:
  void SetUp() override { REQUIRE_GROUND(); }

  /// Of the counters that are served first.
  static json explained(const Unit& unit) {
    const std::string path = "ZEB_EthernetStatistics.InstanceID=%22JXV:ZEB_EthernetStatistics:1%22";
    const std::string answer =
        ZebManager::exchange(unit.http(), "GET /explain?path=" + path +
                                              " HTTP/1.1\r\nHost: localhost\r\nConnection: close\r\n\r\n");
    EXPECT_EQ(statusOf(answer), 200) << answer << unit.log();
    return json::parse(answer.substr(answer.find("\r\n\r\n") + 4), nullptr, false);
  }

  static json factOf(const json& explained, const std::string& property) {
    for (const json& one : explained.value("properties", json::array())) {
      if (one["property"] == property && !one["facts"].empty()) return one["facts"][0];
    }
    return {};
  }
};

TEST_F(UnitExplains, WhatThePluginsProcessPlays) {
  const Unit unit;
  const json fact = factOf(explained(unit), "BytesReceived");
  EXPECT_EQ(fact.value("fact", ""), "links.statistics.rxBytes");
  EXPECT_EQ(fact.value("from", ""), "RTM_NEWLINK IFLA_STATS64 rx_bytes");
}

TEST_F(UnitExplains, WhatTheKernelSaysToThePluginsProcess) {
  ASSERT_EQ(std::system("ip link add explained0 type veth peer name explained1"), 0);
  {
    const Unit unit({.plugin = {"--include-virtual"}, .settings = {}});
    const json fact = factOf(explained(unit), "BytesReceived");
    EXPECT_EQ(fact.value("fact", ""), "links.statistics.rxBytes") << unit.log();
    EXPECT_THAT(fact.value("interface", ""), testing::StartsWith("explained"));
  }
  EXPECT_EQ(std::system("ip link delete explained0"), 0);
}

}  // namespace
}  // namespace ZebManager
