// What the emulated cards say of themselves through Debian's drivers, each with its cable in and set up.
#include <gmock/gmock.h>

#include "CardFacts.h"
#include "GuestFixture.h"

namespace ZEB::guest {
namespace {

/// All cards are set up once for all tests.
class CardsTest : public GuestFixture, public testing::WithParamInterface<CardFacts> {
 public:
  static void SetUpTestSuite() {
    guest().reset();
    std::vector<std::string> names;
    for (const CardFacts& facts : cardFacts()) names.push_back(facts.name);
    bringUp(names);
  }

 protected:
  void SetUp() override {}
};

TEST_P(CardsTest, HasItsDriver) {
  EXPECT_EQ(guest().must("basename $(readlink /sys/class/net/" + GetParam().name + "/device/driver)"),
            GetParam().driver + "\n");
  EXPECT_EQ(guest().must("ethtool -i " + GetParam().name + " | sed -n 's/^driver: //p'"),
            GetParam().driver + "\n");
}

TEST_P(CardsTest, HasItsPciIds) {
  // Of virtio, the PCI function is the device above the one that the interface belongs to.
  const std::string device =
      "$(ls -d /sys/bus/pci/devices/$(ethtool -i " + GetParam().name + " | sed -n 's/^bus-info: //p'))";
  EXPECT_EQ(fileLine(device + "/vendor"), GetParam().vendor);
  EXPECT_EQ(fileLine(device + "/device"), GetParam().device);
}

TEST_P(CardsTest, HasItsSpeedAndDuplex) {
  const std::string link = "/sys/class/net/" + GetParam().name;
  EXPECT_EQ(fileLine(link + "/speed"), std::to_string(GetParam().speed));
  EXPECT_EQ(fileLine(link + "/duplex"), GetParam().duplex);
  EXPECT_EQ(fileLine(link + "/carrier"), "1");
}

TEST_P(CardsTest, HasItsStatistics) {
  EXPECT_EQ(guest().must("ethtool -S " + GetParam().name + " | wc -l"),
            std::to_string(GetParam().statistics) + "\n");
}

TEST_P(CardsTest, SaysHowItWakes) {
  std::string said = guest().must("ethtool " + GetParam().name + " | sed -n 's/.*Supports Wake-on: //p'");
  if (!said.empty()) said.pop_back();
  EXPECT_EQ(said, GetParam().wakeOnLan);
}

TEST_P(CardsTest, KeepsThePermanentAddressThatItWasGiven) {
  const std::string expected = guest().addressOf(GetParam().name);
  EXPECT_EQ(fileLine("/sys/class/net/" + GetParam().name + "/address"), expected);
  EXPECT_EQ(guest().must("ethtool -P " + GetParam().name), "Permanent address: " + expected + "\n");
}

INSTANTIATE_TEST_SUITE_P(Cards, CardsTest, testing::ValuesIn(cardFacts().begin(), cardFacts().end()),
                         [](const auto& row) { return row.param.name; });

using PlacesTest = GuestFixture;

TEST_F(PlacesTest, SlotsAreKnownByNumber) {
  EXPECT_EQ(guest().must("ls /sys/bus/pci/slots | sort -n"), "3\n4\n7\n9\n");
}

TEST_F(PlacesTest, ATwoPortCardSitsInOneSlot) {
  const std::string slot = fileLine("/sys/bus/pci/slots/3/address");
  const auto place = [](const std::string& link) {
    return guest().must("basename $(readlink /sys/class/net/" + link + "/device)");
  };
  EXPECT_EQ(place("slot3a"), slot + ".0\n");
  EXPECT_EQ(place("slot3b"), slot + ".1\n");
}

TEST_F(PlacesTest, TheBoardNamesItsOwnCard) {
  EXPECT_EQ(fileLine("/sys/class/net/lom1/device/label"), "Onboard LAN 1");
  EXPECT_EQ(fileLine("/sys/class/net/lom1/device/index"), "1");
  EXPECT_EQ(fileLine("/sys/class/net/e1000/device/label"), "");
}

TEST_F(PlacesTest, FirmwareVersionIsRead) {
  EXPECT_EQ(guest().must("ethtool -i slot3a | grep ^firmware"), "firmware-version: 2.1-0\n");
}

}  // namespace
}  // namespace ZEB::guest
