#pragma once

#include <gtest/gtest.h>

#include "ClientFixture.h"
#include "PlayedHost.h"
#include "common/DataStore.h"
#include "support/FilesInMemory.h"
#include "support/StoreTrouble.h"

namespace ZEB::test {

/// A client that changes what is kept in stores: settings, and the filters of ports.
class StoresTest : private FilesInMemory, public ClientTest {
 protected:
  static constexpr const char* kSettings = "ZEB_EthEventSettings";
  static constexpr const char* kFilters = "ZEBEthernetPort";

  /// With eth0 and so on; the second has no carrier.
  explicit StoresTest(std::uint32_t ports) : host(folder / "host.json") {
    for (std::uint32_t i = 0; i < ports; ++i) host.addPort(i + 2, "eth" + std::to_string(i));
    host.link("eth1").carrier = false;
    host.play();
    configure("ZEB_SOURCE_FILE", host.file().string());
  }

  std::string directory() const { return (folder / "store").string(); }
  std::string file(const std::string& store) const { return directory() + "/" + store + ".db"; }

  /// What `zebcim modify` does beside the object manager.
  static void setElsewhere(const char* store, const std::string& key, std::uint32_t value) {
    ASSERT_EQ(setInStore(store, key, value, value).wait(), 0);
  }

  CmpiCpp::CmpiData setting(const char* name) { return only(kSettings).getProperty(name); }
  CMPIrc set(const char* name, const CmpiCpp::CmpiData& value) {
    return change(only(kSettings), name, value);
  }
  bool included(int port) { return membershipOfPort(port).getProperty("Included").asBoolean(); }
  CMPIrc include(int port, bool value) { return change(membershipOfPort(port), "Included", value); }
  std::string keyOf(int port) { return membershipOfPort(port).getProperty("Member").asReference().str(); }

  PlayedHost host;
};

}  // namespace ZEB::test
