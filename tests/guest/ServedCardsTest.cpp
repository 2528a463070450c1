// The cards as the plug-in serves them, against what is known of each and what ip, ethtool and sysfs say.
#include <gmock/gmock.h>

#include <memory>

#include "CardFacts.h"
#include "GuestFixture.h"
#include "ServedModel.h"

namespace ZEB::guest {
namespace {

using nlohmann::json;
using testing::HasSubstr;

constexpr std::uint64_t kMegabit = 1'000'000;

/// What follows from a card's kind, beyond CardFacts.
struct CardKind {
  std::string driver;
  /// The name of the device in the table of PCI ids.
  std::string product;
  /// Codes of the value map of PortType: 62 10-100-1000BaseT, 55 10GBaseT, 51 10-100BaseT, 0 unknown.
  int portType;
  /// Of the supported link modes, Mbit/s; 0 when the driver lists none.
  std::uint64_t fastest;
  bool autoNegotiates;
};

const CardKind kKinds[] = {
    {"e1000e", "82574L Gigabit Network Connection", 62, 1000, true},
    {"e1000", "82540EM Gigabit Ethernet Controller", 62, 1000, true},
    {"vmxnet3", "VMXNET3 Ethernet Controller", 55, 10000, false},
    {"8139cp", "RTL-8100/8101L/8139 PCI Fast Ethernet Adapter", 51, 100, true},
    {"e100", "8255xER/82551IT Fast Ethernet Controller", 51, 100, true},
    {"virtio_net", "Virtio network device", 0, 0, false},
};

const CardKind& kindOf(const std::string& driver) {
  return *std::ranges::find(kKinds, driver, &CardKind::driver);
}

/// All cards are set up once, and the model is read once, for all tests.
class ServedCardsTest : public GuestFixture, public testing::WithParamInterface<CardFacts> {
 public:
  static void SetUpTestSuite() {
    guest().reset();
    std::vector<std::string> names;
    for (const CardFacts& facts : cardFacts()) names.push_back(facts.name);
    bringUp(names);
    model_ = std::make_unique<ServedModel>(guest());
  }
  static void TearDownTestSuite() { model_.reset(); }

 protected:
  void SetUp() override {}

  const ServedInstance& port() { return model_->port(GetParam().name); }
  const CardKind& kind() { return kindOf(GetParam().driver); }
  ServedModel& model() { return *model_; }

  /// The identity of the port's controller of this class, across this association.
  ServedInstance identity(const std::string& association, const std::string& className) {
    const auto found =
        model().across(association, "Dependent", model().controller(port()).path, "Antecedent", className);
    EXPECT_EQ(found.size(), 1U);
    return found.at(0);
  }

 private:
  static inline std::unique_ptr<ServedModel> model_;
};

TEST_P(ServedCardsTest, SpeedAndDuplex) {
  const auto speed = static_cast<std::uint64_t>(std::max(GetParam().speed, 0)) * kMegabit;
  EXPECT_EQ(port()["Speed"], speed);
  EXPECT_EQ(port()["MaxSpeed"], kind().fastest * kMegabit);
  EXPECT_EQ(port()["AutoSense"], kind().autoNegotiates);
  EXPECT_EQ(port()["FullDuplex"], GetParam().duplex == "full" ? json(true) : json(nullptr));
  EXPECT_EQ(port().has("FullDuplex"), GetParam().duplex == "full");
}

TEST_P(ServedCardsTest, WhatEthtoolSaysOfTheLink) {
  const std::string said = guest().must("ethtool " + GetParam().name);
  const json speed = port()["Speed"];
  if (speed == 0) {
    EXPECT_THAT(said, HasSubstr("Speed: Unknown!"));
  } else {
    EXPECT_THAT(said, HasSubstr("Speed: " + std::to_string(speed.get<std::uint64_t>() / kMegabit) + "Mb/s"));
  }
  EXPECT_THAT(said,
              HasSubstr(port()["AutoSense"] == true ? "Auto-negotiation: on" : "Auto-negotiation: off"));
}

TEST_P(ServedCardsTest, AddressesAndFrameSizeAreThoseOfIp) {
  const json link = jsonOf("ip -j link show dev " + GetParam().name).at(0);
  const std::string address = withoutColons(link.at("address"));
  EXPECT_EQ(port()["NetworkAddresses"], json::array({address}));
  EXPECT_EQ(port()["Name"], withoutColons(guest().addressOf(GetParam().name)));
  EXPECT_EQ(port()["ActiveMaximumTransmissionUnit"], link.at("mtu"));
  EXPECT_EQ(model().endpoint(GetParam().name)["MACAddress"], address);
}

TEST_P(ServedCardsTest, TypeOfPort) {
  EXPECT_EQ(port()["PortType"], kind().portType);
  EXPECT_EQ(port()["LinkTechnology"], 2);
  EXPECT_EQ(port()["PortNumber"], GetParam().name == "slot3b" ? 2 : 1);
  EXPECT_EQ(port()["Caption"], kind().product);
}

TEST_P(ServedCardsTest, WakeOnLanIsACapability) {
  const bool wakes = !GetParam().wakeOnLan.empty() && GetParam().wakeOnLan != "d";
  EXPECT_EQ(port()["Capabilities"], json::array({wakes ? 3 : 0}));
  EXPECT_EQ(port()["CapabilityDescriptions"], json::array({wakes ? "Wake On LAN" : "Unknown"}));
  const std::string enabled =
      guest().must("ethtool " + GetParam().name + " | sed -n 's/^[[:space:]]*Wake-on: //p'");
  EXPECT_EQ(port()["EnabledCapabilities"], json::array({enabled.empty() || enabled == "d\n" ? 0 : 3}));
}

TEST_P(ServedCardsTest, IsInOrder) {
  EXPECT_EQ(port()["OperationalStatus"], json::array({2}));
  EXPECT_EQ(port()["HealthState"], 5);
}

TEST_P(ServedCardsTest, DriverIsThatOfEthtool) {
  const ServedInstance driver =
      identity("ZEB_EthernetElementSoftwareIdentity", "ZEB_EthernetPortControllerSoftwareIdentity");
  EXPECT_EQ(driver["Name"], GetParam().driver);
  EXPECT_EQ(driver["VersionString"].get<std::string>() + "\n",
            guest().must("ethtool -i " + GetParam().name + " | sed -n 's/^version: //p'"));
}

TEST_P(ServedCardsTest, FirmwareIsThatOfEthtool) {
  const ServedInstance firmware =
      identity("ZEB_EthernetElementFirmwareIdentity", "ZEB_EthernetPortControllerFirmwareIdentity");
  EXPECT_EQ(firmware["ElementName"],
            GetParam().vendor.substr(2) + ":" +
                (GetParam().device == "0x07b0" ? "7b0" : GetParam().device.substr(2)));
  const bool told = GetParam().driver == "e1000e";
  EXPECT_EQ(firmware["VersionString"], told ? json("2.1-0") : json(nullptr));
  EXPECT_EQ(guest().must("ethtool -i " + GetParam().name + " | sed -n 's/^firmware-version: //p'"),
            told ? "2.1-0\n" : "\n");
}

INSTANTIATE_TEST_SUITE_P(Cards, ServedCardsTest, testing::ValuesIn(cardFacts().begin(), cardFacts().end()),
                         [](const auto& row) { return row.param.name; });

using ServedTrafficTest = GuestFixture;

/// Counters go on while they are compared: what is served lies between two readings of the kernel's.
TEST_F(ServedTrafficTest, IsCounted) {
  std::vector<std::string> names;
  for (const CardFacts& facts : cardFacts()) names.push_back(facts.name);
  bringUp(names);
  for (const std::string& name : names) makeTraffic(name);
  const json before = statistics();
  ServedModel model(guest());
  model.all("ZEB_EthernetStatistics");
  const json after = statistics();
  for (const std::string& name : names) {
    SCOPED_TRACE(name);
    const auto found = model.across("ZEB_EthernetPortStatisticalData", "ManagedElement",
                                    model.port(name).path, "Stats", "ZEB_EthernetStatistics");
    ASSERT_EQ(found.size(), 1U);
    const auto between = [&](const std::string& property, const char* direction, const char* counter) {
      EXPECT_GE(found[0][property], before.at(name).at(direction).at(counter)) << property;
      EXPECT_LE(found[0][property], after.at(name).at(direction).at(counter)) << property;
    };
    between("BytesReceived", "rx", "bytes");
    between("PacketsReceived", "rx", "packets");
    between("BytesTransmitted", "tx", "bytes");
    between("PacketsTransmitted", "tx", "packets");
    EXPECT_GT(found[0]["PacketsTransmitted"], 0);
  }
}

/// Where cards sit; what is up or down does not matter, and the model is read once.
class ServedPlacesTest : public GuestFixture {
 public:
  static void SetUpTestSuite() {
    guest().reset();
    served_ = std::make_unique<ServedModel>(guest());
  }
  static void TearDownTestSuite() { served_.reset(); }

 protected:
  void SetUp() override {}

  ServedInstance package(const std::string& card) {
    const auto found = model_.across("ZEB_EthernetControllerPhysicalPackageEthernetController", "Dependent",
                                     model_.controller(model_.port(card)).path, "Antecedent",
                                     "ZEB_EthernetPortControllerPhysicalPackage");
    EXPECT_EQ(found.size(), 1U);
    return found.at(0);
  }
  ServedInstance location(const std::string& card) {
    const auto found =
        model_.across("ZEB_EthernetControllerPhysicalPackageEthernetControllerLocation", "Element",
                      package(card).path, "PhysicalLocation", "ZEB_EthernetControllerLocation");
    EXPECT_EQ(found.size(), 1U);
    return found.at(0);
  }

  ServedModel& model_ = *served_;

 private:
  static inline std::unique_ptr<ServedModel> served_;
};

TEST_F(ServedPlacesTest, EveryCardIsThereOnce) {
  EXPECT_EQ(model_.all("ZEB_EthernetPort").size(), cardFacts().size());
  // The two ports of the card in slot 3 have one controller.
  EXPECT_EQ(model_.all("ZEB_EthernetPortController").size(), cardFacts().size() - 1);
}

TEST_F(ServedPlacesTest, TwoPortsMakeOneCard) {
  const ServedInstance controller = model_.controller(model_.port("slot3a"));
  EXPECT_EQ(model_.controller(model_.port("slot3b")).path, controller.path);
  EXPECT_EQ(package("slot3a")["Caption"], "Controller (2-port): 82574L Gigabit Network Connection");
  EXPECT_EQ(package("lom1")["Caption"], "Controller (1-port): 82574L Gigabit Network Connection");
}

TEST_F(ServedPlacesTest, ACardInASlot) {
  for (const auto& [card, slot] : {std::pair("slot3a", "3"), std::pair("slot4", "4")}) {
    SCOPED_TRACE(card);
    EXPECT_EQ(package(card)["CanBeFRUed"], true);
    EXPECT_EQ(package(card)["PackageType"], 9);
    EXPECT_EQ(location(card)["Name"], "PCISLOT");
    EXPECT_EQ(location(card)["ElementLocationTagDesc"], 23);
    EXPECT_EQ(location(card)["ElementLocationTag"], std::string("PCI Express slot ") + slot);
    EXPECT_EQ(location(card)["Caption"], std::string("Ethernet Controller in PCI Express slot ") + slot);
  }
}

TEST_F(ServedPlacesTest, ACardOnTheBoard) {
  EXPECT_EQ(package("lom1")["CanBeFRUed"], false);
  EXPECT_EQ(package("lom1")["PackageType"], 1);
  EXPECT_EQ(package("lom1")["OtherPackageType"], "Embedded Controller");
  EXPECT_EQ(location("lom1")["Name"], "EMBEDDED ETHERNET");
  EXPECT_EQ(location("lom1")["ElementLocationTagDesc"], 18);
}

TEST_F(ServedPlacesTest, ACardOfWhichTheFirmwareSaysNothing) {
  EXPECT_EQ(package("e1000")["CanBeFRUed"], false);
  EXPECT_EQ(package("e1000")["PackageType"], 0);
  EXPECT_FALSE(location("e1000").has("ElementLocationTagDesc"));
  EXPECT_THAT(location("e1000").path, HasSubstr("UNKNOWN-"));
}

}  // namespace
}  // namespace ZEB::guest
