#pragma once

#include <linux/ethtool.h>

#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "kernel/EthtoolIoctl.h"

namespace ZEB::ethernet::test {

/// A driver as ethtool's ioctl reaches it. Refuses what it was given no answer to.
struct FakeDriver {
  std::string name = "fake", version, firmwareVersion;
  std::vector<std::pair<std::string, std::uint64_t>> counters;
  int counterReads = 0;

  EthtoolCall call() {
    return [this](const std::string&, void* command) { return answer(command); };
  }

 private:
  template <class Command>
  static Command& as(void* command) {
    return *static_cast<Command*>(command);
  }

  bool answer(void* command) {
    switch (as<std::uint32_t>(command)) {
      case ETHTOOL_GDRVINFO: {
        auto& info = as<ethtool_drvinfo>(command);
        name.copy(info.driver, sizeof info.driver);
        version.copy(info.version, sizeof info.version);
        firmwareVersion.copy(info.fw_version, sizeof info.fw_version);
        info.n_stats = static_cast<std::uint32_t>(counters.size());
        return true;
      }
      case ETHTOOL_GSTRINGS: {
        auto& strings = as<ethtool_gstrings>(command);
        for (std::size_t i = 0; i < counters.size(); ++i)
          std::strcpy(reinterpret_cast<char*>(strings.data) + i * ETH_GSTRING_LEN, counters[i].first.c_str());
        return true;
      }
      case ETHTOOL_GSTATS: {
        ++counterReads;
        auto& stats = as<ethtool_stats>(command);
        for (std::size_t i = 0; i < counters.size(); ++i)
          reinterpret_cast<std::uint64_t*>(stats.data)[i] = counters[i].second;
        return true;
      }
      default:
        return false;
    }
  }
};

}  // namespace ZEB::ethernet::test
