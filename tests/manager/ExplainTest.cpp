// Where values come from, as the command says it of the plug-in itself.
#include <gmock/gmock.h>

#include <fstream>
#include <nlohmann/json.hpp>
#include <set>

#include "RealCommand.h"

namespace ZebManager {
namespace {

using nlohmann::json;
using testing::AllOf;
using testing::HasSubstr;

class Explain : public RealCommand {
 protected:
  json jsonOf(const std::vector<std::string>& arguments, const std::string& host) const {
    std::vector<std::string> all = {"--json", "--source", snapshotFile(host)};
    all.insert(all.end(), arguments.begin(), arguments.end());
    const Outcome outcome = zebcim(all);
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    return json::parse(outcome.out);
  }

  static json propertyOf(const json& explained, const std::string& name) {
    for (const json& one : explained["properties"]) {
      if (one["property"] == name) return one;
    }
    return {};
  }

  /// The first fact that a property comes from.
  static json factOf(const json& explained, const std::string& name) {
    return propertyOf(explained, name)["facts"].at(0);
  }

  static json recordedLink(const std::string& host, const std::string& name) {
    const json recording = json::parse(std::ifstream(snapshotFile(host)));
    for (const json& link : recording["links"]) {
      if (link["name"] == name) return link;
    }
    return {};
  }
};

TEST_F(Explain, APortByTheFactsOfItsInterface) {
  const json port = jsonOf({"explain", "eth2"}, "two_cards");
  const json link = recordedLink("two_cards", "eth2");
  struct Row {
    const char* property;
    const char* fact;
    json recorded;
    json served;
  };
  // The speed is served in bits a second, addresses without colons.
  const Row rows[] = {
      {"Speed", "links.ethtool.speed", link["ethtool"]["speed"], 1'000'000'000},
      {"FullDuplex", "links.ethtool.fullDuplex", true, true},
      {"AutoSense", "links.ethtool.autonegotiation", true, true},
      {"ActiveMaximumTransmissionUnit", "links.mtu", 1500, 1500},
      {"Caption", "links.hardware.deviceName", link["hardware"]["deviceName"],
       link["hardware"]["deviceName"]},
      {"PermanentAddress", "links.permanentAddress", "00:1b:21:00:00:03", "001b21000003"},
      {"LinkTechnology", "links.type", 1, 2},
  };
  for (const Row& row : rows) {
    const json explained = propertyOf(port, row.property);
    EXPECT_EQ(explained["source"], "facts") << row.property;
    EXPECT_EQ(explained["value"], row.served) << row.property;
    const auto& facts = explained["facts"];
    const auto found =
        std::ranges::find_if(facts, [&](const json& fact) { return fact["fact"] == row.fact; });
    ASSERT_NE(found, facts.end()) << row.property << facts.dump(1);
    EXPECT_EQ((*found)["interface"], "eth2") << row.property;
    EXPECT_EQ((*found)["value"], row.recorded) << row.property;
  }
  EXPECT_EQ(factOf(port, "Speed")["from"], "ETHTOOL_MSG_LINKMODES_GET ETHTOOL_A_LINKMODES_SPEED");
  EXPECT_EQ(propertyOf(port, "DeviceID")["source"], "key");
  EXPECT_EQ(propertyOf(port, "EnabledState")["source"], "constant");
  EXPECT_EQ(propertyOf(port, "TimeOfLastStateChange")["source"], "remembered");
  EXPECT_EQ(propertyOf(port, "PortNumber")["source"], "place");
}

TEST_F(Explain, WhatStandsInForWhatIsNotKnown) {
  const json port = jsonOf({"explain", "ZEB_EthernetPort"}, "bare_port");
  const json caption = propertyOf(port, "Caption");
  EXPECT_EQ(caption["source"], "fallback");
  EXPECT_EQ(caption["value"], "Ethernet Port");
  EXPECT_EQ(caption["facts"][0]["value"], nullptr);
  const json duplex = propertyOf(port, "FullDuplex");
  EXPECT_EQ(duplex["source"], "fallback");
  EXPECT_EQ(duplex["value"], nullptr);
  EXPECT_EQ(duplex["facts"][0]["fact"], "links.ethtool.fullDuplex");
}

TEST_F(Explain, OnePropertyInWords) {
  const Outcome outcome =
      zebcim({"--source", snapshotFile("two_cards"), "explain", "eth0", "activemaximumtransmissionunit"});
  EXPECT_EQ(outcome.out,
            "ActiveMaximumTransmissionUnit = 1500\n"
            "    from what the kernel says\n"
            "    links.mtu of eth0 is 1500; RTM_NEWLINK IFLA_MTU\n");
  EXPECT_THAT(zebcim({"--source", snapshotFile("two_cards"), "explain", "eth0", "Mtu"}).err,
              HasSubstr("has no property 'Mtu'"));
  EXPECT_THAT(zebcim({"--source", snapshotFile("two_cards"), "explain", "eth0", "PortNumbr"}).err,
              HasSubstr("has no property 'PortNumbr'; did you mean 'PortNumber'?"));
}

/// A fact is altered by characters, not by bytes.
TEST_F(Explain, NamesWithCharactersOfSeveralBytes) {
  json recording = json::parse(std::ifstream(snapshotFile("two_cards")));
  recording["links"][0]["name"] = "\u00fcber";
  recording["links"][1]["name"] = "\u202e";
  recording["links"][0]["hardware"]["deviceName"] = "";
  std::ofstream(folder / "host.json") << recording;
  const Outcome outcome =
      zebcim({"--source", folder / "host.json", "explain", "\u00fcber", "ActiveMaximumTransmissionUnit"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.err, "");
  EXPECT_THAT(outcome.out, HasSubstr("links.mtu of \u00fcber is 1500; RTM_NEWLINK IFLA_MTU"));
}

/// A trial takes several times as long there, and is the same code for each class.
#if defined(ZEB_SANITIZE_ADDRESS)
constexpr int kEvery = 8;
#else
constexpr int kEvery = 1;
#endif

/// Sources and facts, without the values of what is named by number.
json reasonsIn(const json& explained) {
  json all = json::object();
  for (const json& one : explained["properties"]) {
    std::set<std::string> facts;
    for (const json& fact : one["facts"]) {
      facts.insert(fact["fact"].get<std::string>() + (fact["value"].is_null() ? " unknown" : ""));
    }
    all[one["property"]] = {one["source"], facts};
  }
  return all;
}

/// Ports on cards of four that have nothing to do with the others, before or behind them on the bus.
void addStrangers(json& host, int count, const std::string& domain) {
  const json model = json::parse(std::ifstream(snapshotFile("two_cards")))["links"][0];
  for (int i = 0; i < count; ++i) {
    json link = model;
    char device[16];
    std::snprintf(device, sizeof device, "%s:%02x:%02x.%d", domain.c_str(), 0x80 + i / 128, i / 4 % 32,
                  i % 4);
    link["index"] = 1000 + i;
    link["name"] = "p" + std::to_string(i);
    link["parentDevice"] = link["hardware"]["device"] = link["hardware"]["pci"] = device;
    link["hardware"]["slot"] = 100 + i / 4;
    host["links"].push_back(link);
  }
}

TEST_F(Explain, AmongAThousandOthersAsAlone) {
  const json alone = json::parse(std::ifstream(snapshotFile("teams")));
  json crowd = alone;
  addStrangers(crowd, kEvery == 1 ? 1000 : 100, "0001");
  const std::string file = folder / "crowd.json";
  std::ofstream(file) << crowd;
  for (const std::string name : {"ZEB_EthernetPort", "ZEB_EthernetTeamMember", "ZEB_IPProtocolEndpoint"}) {
    const std::string path = jsonOf({"instances", name}, "teams")[0]["path"];
    const Outcome outcome = zebcim({"--json", "--source", file, "explain", path});
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(reasonsIn(json::parse(outcome.out)), reasonsIn(jsonOf({"explain", path}, "teams"))) << name;
  }
}

/// The port's number among all is another, and not among those of its card.
TEST_F(Explain, BehindOthersThatMoveItsNumber) {
  json crowd = json::parse(std::ifstream(snapshotFile("teams")));
  for (json& link : crowd["links"]) {
    for (const char* const key : {"/parentDevice", "/hardware/device", "/hardware/pci"}) {
      const json::json_pointer pointer(key);
      if (link.contains(pointer)) link[pointer] = "0001" + link[pointer].get<std::string>().substr(4);
    }
  }
  addStrangers(crowd, 100, "0000");
  std::ofstream(folder / "crowd.json") << crowd;
  const Outcome outcome = zebcim({"--json", "--source", folder / "crowd.json", "explain", "eth1"});
  ASSERT_EQ(outcome.status, 0) << outcome.err;
  const json port = json::parse(outcome.out);
  EXPECT_EQ(propertyOf(port, "DeviceID")["value"], "JXV:ZEB_EthernetPort:102");
  EXPECT_EQ(propertyOf(port, "PortNumber")["value"], 2);
  EXPECT_EQ(factOf(port, "ActiveMaximumTransmissionUnit")["interface"], "eth1");
}

struct HostRow {
  std::string name;
  int every;  ///< so many classes one; all of each host would take minutes
};
const HostRow kHosts[] = {{"teams", 1},     {"one_port", 1}, {"bare_port", 4},
                          {"two_cards", 4}, {"on_board", 4}, {"failover_timeline", 4}};

/// Among the machines that are tried are some that there cannot be, which the plug-in would complain of.
TEST_F(Explain, LogsNothingOfWhatItTries) {
  const Outcome outcome = zebcim({"--source", snapshotFile("one_port"), "explain", "eth0"},
                                 {"ZEB_LOG_TARGET=stderr", "ZEB_LOG_LEVEL=error"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.err, "");
}

/// The one instance of each class that is served first.
TEST_F(Explain, EveryPropertyOfEveryClass) {
  int number = 0;
  std::map<std::string, std::set<std::string>> constants;
  for (const auto& [host, every] : kHosts) {
    for (const json& one : jsonOf({"classes"}, host)) {
      const std::string name = one["class"];
      if (one["indication"] || number++ % (every * kEvery) != 0) continue;
      const json instances = jsonOf({"instances", name}, host);
      if (instances.empty()) continue;
      const json explained = jsonOf({"explain", instances[0]["path"]}, host);
      EXPECT_EQ(explained["path"], instances[0]["path"]);
      for (const auto& [property, value] : instances[0]["properties"].items()) {
        const json why = propertyOf(explained, property);
        ASSERT_FALSE(why.is_null()) << name << "." << property;
        if (why["source"] != "setting") {
          EXPECT_EQ(why["value"], value) << name << "." << property;
        }
        const bool ofFacts = why["source"] == "facts" || why["source"] == "fallback";
        EXPECT_TRUE(!ofFacts || !why["facts"].empty()) << name << "." << property;
        for (const json& fact : why["facts"]) EXPECT_TRUE(fact["from"].is_string()) << fact;
        if (why["source"] == "constant") constants[name + "." + property].insert(value.dump());
      }
    }
  }
  // What is said to be always the same is so on all hosts.
  for (const auto& [property, values] : constants) EXPECT_EQ(values.size(), 1U) << property;
}

}  // namespace
}  // namespace ZebManager
