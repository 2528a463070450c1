// What happens to the server and what the plug-in says of it, to somebody who watches.
#include <gmock/gmock.h>

#include <chrono>
#include <map>

#include "AlertWatch.h"
#include "GuestFixture.h"
#include "Scenario.h"

namespace ZEB::guest {
namespace {

/// Where a port of testServer() is, in bus order: the board before the slots.
struct Place {
  int portNumber, controller, portOfController;
  std::string words;
};

const std::map<std::string, Place> kPlaces = {
    {"lom1", {1, 1, 1, "Onboard LAN 1"}},
    {"slot3a", {6, 6, 1, "PCI Express slot 3"}},
    {"slot3b", {7, 6, 2, "PCI Express slot 3"}},
    {"slot4", {8, 7, 1, "PCI Express slot 4"}},
};

class AlertTest : public GuestFixture, public testing::WithParamInterface<Scenario> {
 protected:
  void run(const Scenario& scenario) {
    if (!scenario.setUp.empty()) guest().must(scenario.setUp);
    for (const std::string& card : scenario.up) ASSERT_TRUE(awaitCarrier(card, true)) << card;
    awaitBond();
    AlertWatch watch(guest());
    if (!scenario.settings.empty()) watch.configure(scenario.settings);
    if (!scenario.excluded.empty()) watch.exclude(kPlaces.at(scenario.excluded).portNumber);
    watch.start();
    for (std::size_t i = 0; i < scenario.steps.size(); ++i) {
      SCOPED_TRACE("step " + std::to_string(i + 1));
      runStep(watch, scenario.steps[i]);
    }
  }

 private:
  /// Until the bond, if there is one, thinks of its members as they are.
  void awaitBond() {
    constexpr std::string_view kSettled = R"(
        cd /sys/class/net
        [ -e bond1 ] || exit 0
        ! grep -qvx up */bonding_slave/mii_status && grep -qx 1 bond1/carrier &&
          { ! grep -q 802.3ad bond1/bonding/mode || grep -qx 2 bond1/bonding/ad_num_ports; })";
    ASSERT_TRUE(guest().await(kSettled, std::chrono::seconds(60)));
  }

  void runStep(AlertWatch& watch, const Step& step) {
    step.action(guest());
    const std::vector<Alert> alerts = watch.next(step.alerts.size());
    ServedModel model(guest());
    std::map<std::string, std::vector<Alert>> found, expected;
    for (const ExpectedAlert& row : step.alerts) {
      const Alert alert = alertOf(row, model);
      expected[alert.element].push_back(alert);
    }
    for (const Alert& alert : alerts) found[alert.element].push_back(alert);
    EXPECT_EQ(found, expected);
    for (const auto& check : step.served) check(model);
  }

  Alert alertOf(const ExpectedAlert& row, ServedModel& model) {
    const auto place = kPlaces.find(row.about);
    const std::string event = std::to_string(row.event);
    if (place == kPlaces.end()) {
      const bool presence = row.event == 11 || row.event == 12;
      return {event, teamPath(model), "12", row.detail, "", presence ? "" : "N/A", row.comment};
    }
    const auto& [number, controller, portOfController, words] = place->second;
    const std::string path = portPath(row.about, model);
    EXPECT_THAT(path, testing::HasSubstr("\"JXV:ZEB_EthernetPort:" + std::to_string(number) + "\""));
    // None of the emulated cards carries vital product data, so none has a part number.
    return {event,
            path,
            "11",
            "Ethernet port " + std::to_string(portOfController) + " on ethernet controller " +
                std::to_string(controller),
            words,
            "",
            row.comment};
  }

  // As they are served when they are first asked for, which takes its time: no card that stays changes its
  // path, and the one team is always the first.
  static std::string portPath(const std::string& card, ServedModel& model) {
    static std::map<std::string, std::string> paths;
    std::string& path = paths[card];
    if (path.empty()) path = model.port(card).path;
    return path;
  }
  static std::string teamPath(ServedModel& model) {
    static const std::string path = model.all("ZEB_EthernetTeam").at(0).path;
    return path;
  }
};

TEST_P(AlertTest, GivesTheseAndNoOther) {
  run(GetParam());
}

const auto kName = [](const testing::TestParamInfo<Scenario>& row) { return row.param.name; };

INSTANTIATE_TEST_SUITE_P(Watched, AlertTest, testing::ValuesIn(scenarios()), kName);
INSTANTIATE_TEST_SUITE_P(SwitchedOff, AlertTest, testing::ValuesIn(switchedOffScenarios()), kName);

}  // namespace
}  // namespace ZEB::guest
