#include <gtest/gtest.h>

#include <fstream>

#include "MemoryHost.h"
#include "Plugin.h"
#include "recorded/SnapshotWriter.h"

// Endpoints are numbered in sixteen bits: after the last number comes 0.

namespace ZEB::test {
namespace {

constexpr std::size_t kNumbers = 65536;

class EndpointNumbersTest : public ProviderTest {
 protected:
  /// The endpoints of a class, in the order in which they were made.
  std::vector<std::string> served(const std::string& className) {
    const auto file = folder / "host.json";
    std::ofstream(file) << ethernet::writeSnapshot(host.snapshot());
    serve(file.string());
    setProcessLogSink(log, LogLevel::Warn);  // a line for each of so many takes memory
    std::vector<std::string> names;
    Plugin plugin(broker);
    for (const auto& path : plugin.names(className)) names.push_back(shortName(path));
    return names;
  }

  /// One more than there are numbers.
  static void expectWrapped(const std::vector<std::string>& names, const std::string& prefix) {
    ASSERT_EQ(names.size(), kNumbers + 1);
    EXPECT_EQ(names.front(), prefix + "1");
    EXPECT_EQ(names.at(kNumbers - 2), prefix + "65535");
    EXPECT_EQ(names.at(kNumbers - 1), prefix + "0");
    EXPECT_EQ(names.at(kNumbers), prefix + "1");
  }

  MemoryHost host;
};

TEST_F(EndpointNumbersTest, OfIPEndpointsWrap) {
  const auto index = host.addPort("eth0").index;
  host.link("eth0").address = ethernet::HardwareAddress{2, 0, 0, 0, 0, 1};
  for (std::size_t i = 0; i <= kNumbers; ++i) {
    auto& own = host.snapshot().addresses.emplace_back(address("2001:db8::", 64));
    own.index = index;
    for (std::size_t byte = 0; byte < 3; ++byte)
      own.address.bytes[15 - byte] = static_cast<std::uint8_t>(i >> 8 * byte);
  }
  expectWrapped(served("ZEB_IPProtocolEndpoint"), "IPProtocolEndpoint:");
}

TEST_F(EndpointNumbersTest, OfLANEndpointsWrap) {
  host.addPort("eth0");  // without an address of its own it has no LAN endpoint
  for (std::size_t i = 0; i <= kNumbers; ++i) host.addVlan("vlan" + std::to_string(i), "eth0");
  expectWrapped(served("ZEB_EthernetLANEndpoint"), "LANEndpoint:");
}

}  // namespace
}  // namespace ZEB::test
