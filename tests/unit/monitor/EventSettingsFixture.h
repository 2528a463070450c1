#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <vector>

#include "cmpicpp/CmpiStatus.h"
#include "common/ZEBUtil.h"
#include "monitor/ZEB_EthEventSettings.h"
#include "support/Environment.h"
#include "support/ProcessLog.h"
#include "support/TestFolder.h"

namespace ZEB::test {

struct Expected {
  const char* name;
  CmpiCpp::CmpiData initial;
};

/// The settings in their order, with their types and defaults.
inline const std::vector<Expected>& expectedSettings() {
  static const std::vector<Expected> kSettings = {
      {"PollInterval", std::uint32_t{200}},
      {"FloodThreshold", std::uint32_t{10}},
      {"MaxFloodLevel", std::uint32_t{100}},
      {"ActiveAdapterCountChanged", false},
      {"MemberRoleChanged", false},
      {"MemberStatusChanged", false},
      {"MemberJoinedTeam", false},
      {"MemberLeftTeam", false},
      {"InterfaceAvailable", false},
      {"InterfaceUnAvailable", false},
      {"MonitorPorts", true},
      {"MonitorLANEndpoints", false},
      {"MonitorRedundancySets", true},
  };
  return kSettings;
}

class EventSettingsTest : public testing::Test {
 protected:
  ZEB_EthEventSettings make() { return {recorded.logger, "root/jxv"}; }

  static CmpiCpp::CmpiInstance changed(std::initializer_list<CmpiCpp::CmpiInstance::Property> properties) {
    CmpiCpp::CmpiInstance instance;
    for (const auto& property : properties) instance.addProperty(property.name, property.value);
    return instance;
  }

  static CMPIrc modify(ZEB_EthEventSettings& settings, const CmpiCpp::CmpiInstance& instance,
                       std::vector<const char*> names) {
    names.push_back(nullptr);
    try {
      settings.modify(instance, names.data());
      return CMPI_RC_OK;
    } catch (const CmpiCpp::CmpiStatus& status) {
      EXPECT_EQ(status.msg(), "");
      return status.rc();
    }
  }

  TestFolder directory;
  Environment storeDirectory{"ZEB_STORE_DIR", directory.file("stores")};
  ProcessLog processLog;
  RecordedLogger recorded;
};

}  // namespace ZEB::test
