// From a cable of the server to the real Alertmanager, both ways: through the real Prometheus, which scrapes
// every second, and straight.
#include <gmock/gmock.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <optional>

#include "GuestFixture.h"
#include "GuestServer.h"

namespace ZEB::guest {
namespace {

using nlohmann::json;
using testing::UnorderedElementsAre;
using namespace std::chrono_literals;

constexpr char kAlertmanager[] = "127.0.0.1:9093", kPrometheus[] = "127.0.0.1:9090";

class MonitoringTest : public GuestFixture {
 protected:
  void SetUp() override {
    for (const char* const program :
         {"/usr/bin/prometheus", "/usr/bin/prometheus-alertmanager", "/usr/bin/curl"}) {
      if (!std::filesystem::exists(program)) GTEST_SKIP() << program << " is not installed";
    }
    GuestFixture::SetUp();
  }
  void TearDown() override {
    server.reset();
    guest().run(
        "for pid in $(cat /tmp/monitor/*.pid); do kill $pid; while [ -e /proc/$pid/exe ]; do sleep 0.05; "
        "done; done");
  }

  void makeBond() {
    bringUp({"slot3a", "slot3b"});
    guest().must(R"(set -e
      ip link add bond1 type bond mode active-backup miimon 100
      for port in slot3a slot3b; do ip link set $port down; ip link set $port master bond1; done
      ip link set bond1 up
      until ! grep -qvx up /sys/class/net/slot3?/bonding_slave/mii_status; do sleep 0.05; done)");
    ASSERT_TRUE(awaitCarrier("bond1", true));
  }

  void startMonitors() {
    guest().must(std::string(R"(set -e
      rm -rf /tmp/monitor; mkdir /tmp/monitor; cd /tmp/monitor
      cat >alertmanager.yml <<END
route: {receiver: nobody}
receivers: [{name: nobody}]
END
      cat >prometheus.yml <<END
global: {scrape_interval: 1s, evaluation_interval: 1s}
rule_files: [)" ZEB_RULES R"(]
scrape_configs: [{job_name: zeb, static_configs: [{targets: [')") +
                 GuestServer::kAddress + R"(']}]}]
alerting: {alertmanagers: [{static_configs: [{targets: [')" +
                 kAlertmanager + R"(']}]}]}
END
      setsid prometheus-alertmanager --config.file=alertmanager.yml --storage.path=kept --cluster.listen-address= \
        --web.listen-address=)" +
                 kAlertmanager + R"( --log.level=error </dev/null >alertmanager.log 2>&1 &
      echo $! >alertmanager.pid
      setsid prometheus --config.file=prometheus.yml --storage.tsdb.path=data --web.listen-address=)" +
                 kPrometheus +
                 R"( --log.level=error </dev/null >prometheus.log 2>&1 &
      echo $! >prometheus.pid)");
  }

  /// Names of the alerts that are active, with what each is about; nothing as long as there are not so many.
  static std::vector<std::string> alerts(std::size_t count) {
    const std::string ask = std::string("curl -sf 'http://") + kAlertmanager + "/api/v2/alerts?active=true'";
    const std::string counted =
        "[ \"$(" + ask + " | grep -o '\"alertname\"' | wc -l)\" = " + std::to_string(count) + " ]";
    EXPECT_TRUE(guest().await(ask + " >/dev/null && " + counted, 90s)) << guest().run(ask).output;
    std::vector<std::string> found;
    for (const json& alert : jsonOf(ask)) {
      const json& labels = alert.at("labels");
      found.push_back(labels.at("alertname").get<std::string>() + " " +
                      labels.value("interface", labels.value("device", "")) + "/" + labels.value("team", ""));
    }
    return found;
  }

  std::optional<GuestServer> server;
};

TEST_F(MonitoringTest, APulledCableOfABondFiresBothWaysUntilItIsBack) {
  makeBond();
  startMonitors();
  server.emplace(guest(), std::string("[alertmanager]\nurls = [\"http://") + kAlertmanager + "\"]\n");
  ASSERT_TRUE(
      guest().await(std::string("curl -sfG 'http://") + kPrometheus +
                        "/api/v1/query' --data-urlencode 'query=zeb_port_carrier{device=\"slot3b\"} == 1' | "
                        "grep -q slot3b",
                    60s))
      << guest().run("tail /tmp/monitor/*.log /tmp/serve/log").output;
  EXPECT_THAT(alerts(0), UnorderedElementsAre());
  guest().setLink("slot3b", false);
  EXPECT_THAT(alerts(3), UnorderedElementsAre("ZebConnectivityLost slot3b/", "ZebConnectivityLost /bond1",
                                              "ZebRedundancyLost /bond1"));
  // The rules want 30 seconds.
  EXPECT_THAT(alerts(6),
              UnorderedElementsAre("ZebConnectivityLost slot3b/", "ZebConnectivityLost /bond1",
                                   "ZebRedundancyLost /bond1", "ZebPortDown slot3b/",
                                   "ZebTeamMemberFailed slot3b/bond1", "ZebTeamRedundancyLost bond1/"));
  guest().setLink("slot3b", true);
  EXPECT_THAT(alerts(0), UnorderedElementsAre());
}

class LacpTest : public GuestFixture {
 protected:
  /// Metrics of LACP, each without "zeb_team_" and in one order.
  static std::string lacp() {
    return guest().must(ZEBCIM " metrics | sed -n '/_lacp_/s/^zeb_team_//p' | sort", 60s);
  }
};

TEST_F(LacpTest, HasAPartnerUntilThatFallsSilent) {
  guest().must(R"(set -e
    ip -n partner link add bond4 type bond mode 802.3ad miimon 100 lacp_rate fast
    ip link add bond4 type bond mode 802.3ad miimon 100 lacp_rate fast
    for port in slot3a slot3b; do
      ip -n partner link set $port-peer down; ip -n partner link set $port-peer master bond4
      ip link set $port down; ip link set $port master bond4
    done
    ip -n partner link set bond4 up; ip link set bond4 up)");
  ASSERT_TRUE(guest().await("grep -qx 2 /sys/class/net/bond4/bonding/ad_num_ports", 60s));
  const auto ofKernel = [](const std::string& name) {
    return fileLine("/sys/class/net/bond4/bonding/ad_" + name);
  };
  const std::string aggregator = ofKernel("aggregator"), partner = ofKernel("partner_mac");
  // The last of it comes a little later than the number of ports.
  ASSERT_TRUE(guest().await(ZEBCIM " metrics | grep -c 'lacp_synchronized.* 1$' | grep -qx 2", 60s))
      << lacp();
  EXPECT_EQ(lacp(), "lacp_info{device=\"bond4\",aggregator=\"" + aggregator + "\",actor_key=\"" +
                        ofKernel("actor_key") + "\",partner=\"" + partner + "\",partner_key=\"" +
                        ofKernel("partner_key") +
                        "\"} 1\nlacp_partner{device=\"bond4\"} 1\nlacp_ports{device=\"bond4\"} 2\n"
                        "member_lacp_aggregator{team=\"bond4\",device=\"slot3a\"} " +
                        aggregator + "\nmember_lacp_aggregator{team=\"bond4\",device=\"slot3b\"} " +
                        aggregator +
                        "\nmember_lacp_partner{team=\"bond4\",device=\"slot3a\"} 1\n"
                        "member_lacp_partner{team=\"bond4\",device=\"slot3b\"} 1\n"
                        "member_lacp_synchronized{team=\"bond4\",device=\"slot3a\"} 1\n"
                        "member_lacp_synchronized{team=\"bond4\",device=\"slot3b\"} 1\n");
  EXPECT_EQ(partner + "\n", guest().must("ip netns exec partner cat /sys/class/net/bond4/address"));
  // The links stay.
  guest().must("ip -n partner link set bond4 down");
  ASSERT_TRUE(guest().await("grep -qx 00:00:00:00:00:00 /sys/class/net/bond4/bonding/ad_partner_mac", 60s));
  EXPECT_TRUE(guest().await(ZEBCIM " metrics | grep -qx 'zeb_team_lacp_partner{device=\"bond4\"} 0'", 60s))
      << lacp();
  EXPECT_THAT(lacp(), testing::HasSubstr("member_lacp_partner{team=\"bond4\",device=\"slot3a\"} 0\n"));
}

}  // namespace
}  // namespace ZEB::guest
