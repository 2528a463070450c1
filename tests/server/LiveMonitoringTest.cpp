// From a link of this kernel to the real Alertmanager, both ways: through the real Prometheus, and straight.
#include <gmock/gmock.h>

#include "Namespace.h"
#include "RealAlertmanager.h"
#include "RealPrometheus.h"
#include "Server.h"
#include "support/NetworkNamespace.h"

namespace ZebManager {
namespace {

const std::vector<std::string> kNone;

/// The rule wants 30 seconds.
TEST(LiveMonitoring, AVethPortThatLosesItsLinkFiresBothWaysUntilItIsBack) {
  if (access(kAlertmanager, X_OK) != 0 || access(kPrometheus, X_OK) != 0)
    GTEST_SKIP() << "Debian's prometheus and prometheus-alertmanager are not installed";
  IN_NAMESPACE([] {
    ASSERT_TRUE(ZEB::test::setLoopback(true));
    ZEB::test::makePairs(1);
    const std::uint16_t port = freePort();
    const RealAlertmanager alertmanager(port);
    const Server server({"--include-virtual"},
                        "[alertmanager]\nurls = [\"http://" + alertmanager.address() + "\"]\n");
    const RealPrometheus prometheus(server.http(), alertmanager.address());
    ASSERT_FALSE(prometheus.resultOf("zeb_port_carrier{device=\"a0\"} == 1").empty());
    ASSERT_TRUE(alertmanager.becomes(kNone));
    ZEB::test::ip("link set b0 down");
    ASSERT_TRUE(alertmanager.becomes({"ZebConnectivityLost"})) << "straight, long before the rule";
    ASSERT_TRUE(alertmanager.becomes({"ZebConnectivityLost", "ZebPortDown"}));
    const nlohmann::json alerts = *alertmanager.active();
    for (const nlohmann::json& alert : alerts) {
      const nlohmann::json& labels = alert["labels"];
      EXPECT_EQ(labels.value("interface", labels.value("device", "")), "a0");
    }
    ZEB::test::ip("link set b0 up");
    EXPECT_TRUE(alertmanager.becomes(kNone));
  });
}

}  // namespace
}  // namespace ZebManager
