// Where values come from is found out by a server that may not ask the kernel itself.
#include <gmock/gmock.h>

#include <nlohmann/json.hpp>
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

  static json explained(const Unit& unit, const std::string& path) {
    std::string answer;
    for (int tries = 0; tries < 60; ++tries) {
      answer =
          ZebManager::exchange(unit.http(), "GET /explain?path=" + path +
                                                " HTTP/1.1\r\nHost: localhost\r\nConnection: close\r\n\r\n");
      if (statusOf(answer) != 202) break;
    }
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
  const json fact =
      factOf(explained(Unit(), "ZEB_EthernetStatistics.InstanceID=%22JXV:ZEB_EthernetStatistics:1%22"),
             "BytesReceived");
  EXPECT_EQ(fact["fact"], "links.statistics.rxBytes");
  EXPECT_EQ(fact["from"], "RTM_NEWLINK IFLA_STATS64 rx_bytes");
}

}  // namespace
}  // namespace ZebManager
