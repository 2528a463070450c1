// Where every value of every class comes from, on the drivers of the guest. The guest records, and what it
// recorded is explained here: in the guest, which is emulated, it would take ten times as long.
#include <gmock/gmock.h>

#include <array>
#include <cstdio>
#include <map>
#include <nlohmann/json.hpp>
#include <set>

#include "GuestFixture.h"

namespace ZEB::guest {
namespace {

using nlohmann::json;

/// What zebcim answers on this machine.
json asked(const std::string& words) {
  const std::string command = "'" ZEBCIM "' --json " + words;
  FILE* const output = popen(command.c_str(), "r");
  std::string text;
  std::array<char, 65536> buffer{};
  while (const std::size_t got = fread(buffer.data(), 1, buffer.size(), output))
    text.append(buffer.data(), got);
  EXPECT_EQ(pclose(output), 0) << command;
  return json::parse(text, nullptr, false);
}

class ExplainTest : public GuestFixture {
 protected:
  /// A team with a VLAN, addresses and a gateway.
  static void configure() {
    bringUp({"slot4", "slot7", "lom1", "e1000", "virtio"});
    guest().must(R"sh(set -e
ip link add bond0 type bond mode active-backup miimon 100
ip link set slot3a master bond0
ip link set slot3b master bond0
ip link set bond0 up
ip link add link bond0 name bond0.7 type vlan id 7
ip address add 192.0.2.10/24 dev bond0
ip address add 2001:db8::10/64 dev lom1
ip route add default via 192.0.2.1 dev bond0)sh");
  }

  /// That each property has an answer, with a fact where it is said to come from facts.
  static void expectAnswers(const json& instance, const json& explained) {
    std::map<std::string, json> answers;
    for (const json& one : explained["properties"]) answers[one["property"]] = one;
    for (const auto& [property, value] : instance["properties"].items()) {
      const std::string where = instance["path"].get<std::string>() + " " + property;
      ASSERT_TRUE(answers.contains(property)) << where;
      const json& answer = answers[property];
      const std::string source = answer["source"];
      EXPECT_TRUE(source == "setting" || answer["value"] == value) << where << answer;
      EXPECT_TRUE((source != "facts" && source != "fallback") || !answer["facts"].empty()) << where;
      for (const json& fact : answer["facts"]) EXPECT_TRUE(fact["from"].is_string()) << where << fact;
    }
  }
};

TEST_F(ExplainTest, NoPropertyOfAnyClassIsWithoutAnAnswer) {
  configure();
  guest().must(ZEBCIM " capture /results/explained.json");
  const std::string source = "--source '" + (guest().results() / "explained.json").string() + "' ";
  std::set<std::string> classes;
  for (const json& one : asked(source + "classes")) {
    const std::string name = one["class"];
    if (one["indication"]) continue;
    const json instances = asked(source + "instances " + name);
    // Each driver's own port, counters, card and software; of what lies above them the first.
    const bool ofDrivers =
        std::set<std::string>{"ZEB_EthernetPort", "ZEB_EthernetStatistics", "ZEB_EthernetPortController"}
            .contains(name);
    for (std::size_t i = 0; i < (ofDrivers ? instances.size() : std::min<std::size_t>(instances.size(), 1));
         ++i) {
      const std::string path = instances[i]["path"];
      expectAnswers(instances[i], asked(source + "explain '" + path + "'"));
      classes.insert(instances[i]["class"]);
    }
  }
  EXPECT_GT(classes.size(), 25U);
}

/// The same question, asked where the kernel and its drivers are.
TEST_F(ExplainTest, APortIsExplainedByItsKernel) {
  bringUp({"lom1"});
  const json explained = json::parse(guest().must(
      ZEBCIM " --timeout 0 --json explain lom1 ActiveMaximumTransmissionUnit", std::chrono::seconds(180)));
  const json& fact = explained["properties"][0]["facts"][0];
  EXPECT_EQ(fact["fact"], "links.mtu");
  EXPECT_EQ(fact["interface"], "lom1");
  EXPECT_EQ(fact["value"], 1500);
}

}  // namespace
}  // namespace ZEB::guest
