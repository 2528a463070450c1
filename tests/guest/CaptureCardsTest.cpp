// What zeb-capture reads of the cards, against what is known of each and what ip, ethtool and sysfs say.
#include <gmock/gmock.h>

#include <algorithm>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <sstream>

#include "CaptureFixture.h"
#include "CardFacts.h"

namespace ZEB::guest {
namespace {

using nlohmann::json;
using testing::Contains;
using testing::HasSubstr;
using testing::UnorderedElementsAreArray;

/// ethtool's letters for what wakes a machine, as the kernel's bits.
unsigned wakeBits(const std::string& letters) {
  const std::map<char, unsigned> bits = {{'p', 1},  {'u', 2},  {'m', 4}, {'b', 8},
                                         {'a', 16}, {'g', 32}, {'s', 64}};
  unsigned sum = 0;
  for (const char letter : letters) {
    if (letter != 'd') sum += bits.at(letter);
  }
  return sum;
}

std::vector<std::string> words(const std::string& text) {
  std::istringstream stream(text);
  return {std::istream_iterator<std::string>(stream), {}};
}

/// The driver's own names of the counters that a snapshot has; a driver without them has nothing to report.
const std::map<std::string, std::map<std::string, std::string>> kErrorCounters = {
    {"e1000e",
     {{"alignmentErrors", "rx_align_errors"},
      {"fcsErrors", "rx_crc_errors"},
      {"singleCollisions", "tx_single_coll_ok"},
      {"multipleCollisions", "tx_multi_coll_ok"},
      {"deferred", "tx_deferred_ok"},
      {"lateCollisions", "tx_abort_late_coll"}}},
    {"e1000",
     {{"alignmentErrors", "rx_align_errors"},
      {"fcsErrors", "rx_crc_errors"},
      {"singleCollisions", "tx_single_coll_ok"},
      {"multipleCollisions", "tx_multi_coll_ok"},
      {"deferred", "tx_deferred_ok"},
      {"lateCollisions", "tx_abort_late_coll"}}},
    {"e100",
     {{"fcsErrors", "rx_crc_errors"},
      {"singleCollisions", "tx_single_collisions"},
      {"multipleCollisions", "tx_multi_collisions"},
      {"deferred", "tx_deferred"}}},
    {"8139cp",
     {{"alignmentErrors", "frame_align"},
      {"singleCollisions", "tx_ok_1col"},
      {"multipleCollisions", "tx_ok_mcol"}}},
    {"vmxnet3", {}},
    {"virtio_net", {}},
};

/// All cards are set up once, and captured once, for all tests.
class CaptureCardsTest : public CaptureFixture, public testing::WithParamInterface<CardFacts> {
 public:
  static void SetUpTestSuite() {
    guest().reset();
    std::vector<std::string> names;
    for (const CardFacts& facts : cardFacts()) names.push_back(facts.name);
    bringUp(names);
    snapshot_ = std::make_unique<json>(capture());
  }
  static void TearDownTestSuite() {
    snapshot_.reset();
    said_.clear();
  }

 protected:
  void SetUp() override {}

  json link() const { return linkOf(*snapshot_, GetParam().name); }

  /// The answer of `ethtool ARGUMENTS CARD`, asked once.
  static const std::string& ethtool(const std::string& arguments) {
    const auto [entry, isNew] = said_.try_emplace(arguments + " " + GetParam().name);
    if (isNew) entry->second = guest().must("ethtool " + entry->first);
    return entry->second;
  }

  /// What follows `label` in its line of that answer.
  static std::string ethtool(const std::string& arguments, const std::string& label) {
    std::istringstream lines(ethtool(arguments));
    for (std::string line; std::getline(lines, line);) {
      line.erase(0, line.find_first_not_of(" \t"));
      if (line.starts_with(label + ":")) return line.substr(std::min(label.size() + 2, line.size()));
    }
    return "";
  }

  /// The captured modes of a set that have a speed.
  std::vector<std::string> speeds(const char* set) const {
    std::vector<std::string> modes;
    for (const std::string mode : link().at("ethtool").value(set, json::array())) {
      if (mode.find("base") != std::string::npos) modes.push_back(mode);
    }
    return modes;
  }

  /// Those that ethtool lists behind a label, line after line up to the next label.
  static std::vector<std::string> modesAfter(const std::string& label) {
    const std::string& said = ethtool("");
    const std::size_t begin = said.find(label);
    if (begin == std::string::npos) return {};
    std::vector<std::string> modes = words(said.substr(begin + label.size()));
    modes.erase(std::ranges::find_if(
                    modes, [](const std::string& word) { return word.find("base") == std::string::npos; }),
                modes.end());
    return modes;
  }

 private:
  static inline std::unique_ptr<json> snapshot_;
  static inline std::map<std::string, std::string> said_;
};

TEST_P(CaptureCardsTest, DriverIsThatOfEthtool) {
  const json driver = link().at("driver");
  EXPECT_EQ(driver.at("name"), GetParam().driver);
  EXPECT_EQ(driver.at("version"), ethtool("-i", "version"));
  EXPECT_EQ(driver.value("firmwareVersion", ""), ethtool("-i", "firmware-version"));
  EXPECT_EQ(driver.value("firmwareVersion", ""), GetParam().driver == "e1000e" ? "2.1-0" : "");
}

TEST_P(CaptureCardsTest, PciFunctionIsThatOfSysfs) {
  const json hardware = link().at("hardware");
  EXPECT_EQ(hardware.at("pci"), ethtool("-i", "bus-info"));
  EXPECT_EQ(hardware.at("vendorId"), std::stoi(GetParam().vendor, nullptr, 16));
  EXPECT_EQ(hardware.at("deviceId"), std::stoi(GetParam().device, nullptr, 16));
}

TEST_P(CaptureCardsTest, SpeedAndDuplex) {
  const json facts = link().at("ethtool");
  if (GetParam().speed < 0) {
    EXPECT_FALSE(facts.contains("speed"));
    EXPECT_FALSE(facts.contains("fullDuplex"));
    return;
  }
  EXPECT_EQ(facts.at("speed"), GetParam().speed);
  EXPECT_EQ(facts.at("fullDuplex"), GetParam().duplex == "full");
}

TEST_P(CaptureCardsTest, LinkModesAreThoseOfEthtool) {
  const std::vector<std::string> captured = speeds("supported");
  EXPECT_THAT(captured, UnorderedElementsAreArray(modesAfter("Supported link modes:")));
  EXPECT_EQ(captured.empty(), GetParam().driver == "virtio_net");
}

TEST_P(CaptureCardsTest, WhatTheOtherEndOffersIsThatOfEthtool) {
  const std::vector<std::string> captured = speeds("partner");
  EXPECT_THAT(captured, UnorderedElementsAreArray(modesAfter("Link partner advertised link modes:")));
  // These drivers read it of their transceivers.
  const bool told = GetParam().driver == "8139cp" || GetParam().driver == "e100";
  if (told) {
    EXPECT_THAT(captured, Contains("100baseT/Full"));
  }
}

TEST_P(CaptureCardsTest, AutonegotiationIsThatOfEthtool) {
  EXPECT_EQ(link().at("ethtool").at("autonegotiation"), ethtool("", "Auto-negotiation") == "on");
}

TEST_P(CaptureCardsTest, WakeOnLan) {
  const json facts = link().at("ethtool");
  EXPECT_EQ(facts.value("wakeOnLanSupported", 0U), wakeBits(GetParam().wakeOnLan));
  EXPECT_EQ(facts.value("wakeOnLanEnabled", 0U), wakeBits(ethtool("", "Wake-on")));
}

TEST_P(CaptureCardsTest, LinkIsThatOfIp) {
  const json kernel = jsonOf("ip -j -d link show dev " + GetParam().name).at(0);
  EXPECT_EQ(link().at("index"), kernel.at("ifindex"));
  EXPECT_EQ(link().at("address"), kernel.at("address"));
  EXPECT_EQ(link().at("mtu"), kernel.at("mtu"));
  EXPECT_EQ(link().at("operState"), kernel.at("operstate"));
  EXPECT_EQ(link().at("parentDevice"), kernel.at("parentdev"));
  EXPECT_EQ(link().at("carrier"), true);
  EXPECT_EQ(link().at("permanentAddress"), guest().addressOf(GetParam().name));
}

TEST_P(CaptureCardsTest, ErrorsAreCountedWhereTheDriverCounts) {
  const json captured = link().at("ethtool").value("mac", json::object());
  const auto& counters = kErrorCounters.at(GetParam().driver);
  for (const auto& [name, counter] : counters) {
    ASSERT_TRUE(captured.contains(name)) << name;
    EXPECT_EQ(std::to_string(captured.at(name).get<std::uint64_t>()), ethtool("-S", counter)) << name;
  }
  EXPECT_EQ(captured.empty(), counters.empty());
}

INSTANTIATE_TEST_SUITE_P(Cards, CaptureCardsTest, testing::ValuesIn(cardFacts().begin(), cardFacts().end()),
                         [](const auto& row) { return row.param.name; });

using CaptureTrafficTest = CaptureFixture;

/// Counters go on while they are compared: what is captured lies between two readings of the kernel's.
TEST_F(CaptureTrafficTest, IsCounted) {
  std::vector<std::string> names;
  for (const CardFacts& facts : cardFacts()) names.push_back(facts.name);
  bringUp(names);
  for (const std::string& name : names) makeTraffic(name);
  const json before = statistics();
  const json all = capture();
  const json after = statistics();
  for (const std::string& name : names) {
    SCOPED_TRACE(name);
    const json now = linkOf(all, name).at("statistics");
    const auto between = [&](const char* counter, const char* direction, const char* kernelCounter) {
      EXPECT_GE(now.at(counter), before.at(name).at(direction).at(kernelCounter)) << counter;
      EXPECT_LE(now.at(counter), after.at(name).at(direction).at(kernelCounter)) << counter;
    };
    between("rxBytes", "rx", "bytes");
    between("rxPackets", "rx", "packets");
    between("txBytes", "tx", "bytes");
    between("txPackets", "tx", "packets");
    EXPECT_GT(now.at("txPackets"), 0);
  }
}

using CapturePlacesTest = CaptureFixture;

TEST_F(CapturePlacesTest, TwoPortsOfOneCardInASlot) {
  const json all = capture();
  const json first = linkOf(all, "slot3a").at("hardware"), second = linkOf(all, "slot3b").at("hardware");
  EXPECT_EQ(first.at("slot"), 3);
  EXPECT_EQ(second.at("slot"), 3);
  EXPECT_EQ(first.at("slotKind"), 5);  // PCI Express
  const std::string place = fileLine("/sys/bus/pci/slots/3/address");
  EXPECT_EQ(first.at("pci"), place + ".0");
  EXPECT_EQ(second.at("pci"), place + ".1");
}

TEST_F(CapturePlacesTest, SlotsAreThoseOfSysfs) {
  const json all = capture();
  for (const std::string slot : {"4", "7"}) {
    const json hardware = linkOf(all, "slot" + slot).at("hardware");
    EXPECT_EQ(std::to_string(hardware.at("slot").get<int>()), slot);
    EXPECT_THAT(hardware.at("pci").get<std::string>(),
                testing::StartsWith(fileLine("/sys/bus/pci/slots/" + slot + "/address")));
  }
}

TEST_F(CapturePlacesTest, TheBoardNamesItsOwnCard) {
  const json all = capture();
  const json named = linkOf(all, "lom1").at("hardware"), unnamed = linkOf(all, "e1000").at("hardware");
  EXPECT_EQ(named.at("onboardLabel"), "Onboard LAN 1");
  EXPECT_EQ(named.at("onboardIndex"), 1);
  EXPECT_FALSE(named.contains("slot"));
  EXPECT_FALSE(unnamed.contains("onboardLabel"));
  EXPECT_FALSE(unnamed.contains("slot"));
}

}  // namespace
}  // namespace ZEB::guest
