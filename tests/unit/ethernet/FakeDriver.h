#pragma once

#include <linux/ethtool.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "kernel/EthtoolIoctl.h"

namespace ZEB::ethernet::test {

/// A driver as ethtool's ioctl reaches it. Refuses what it was given no answer to.
struct FakeDriver {
  std::string name = "fake", version, firmwareVersion;
  std::vector<std::pair<std::string, std::uint64_t>> counters;
  std::vector<std::uint8_t> permanentAddress;
  std::optional<std::uint32_t> speed;
  std::uint8_t duplex = DUPLEX_FULL, port = PORT_FIBRE;
  std::vector<std::uint32_t> supported, advertised;
  std::optional<bool> linkDetected;
  std::optional<std::pair<std::uint32_t, std::uint32_t>> wakeOnLan;  ///< supported, enabled
  std::optional<std::pair<std::uint32_t, bool>> energyEfficient;     ///< supported, enabled
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
      case ETHTOOL_GPERMADDR: {
        auto& address = as<ethtool_perm_addr>(command);
        if (address.size < permanentAddress.size()) return false;
        address.size = static_cast<std::uint32_t>(permanentAddress.size());
        std::ranges::copy(permanentAddress, address.data);
        return true;
      }
      default:
        return answerSettings(command);
    }
  }

  bool answerSettings(void* command) {
    switch (as<std::uint32_t>(command)) {
      case ETHTOOL_GLINKSETTINGS:
        return speed && answerLink(as<ethtool_link_settings>(command));
      case ETHTOOL_GLINK:
        as<ethtool_value>(command).data = linkDetected.value_or(false);
        return linkDetected.has_value();
      case ETHTOOL_GWOL:
        if (wakeOnLan)
          std::tie(as<ethtool_wolinfo>(command).supported, as<ethtool_wolinfo>(command).wolopts) = *wakeOnLan;
        return wakeOnLan.has_value();
      case ETHTOOL_GEEE:
        if (energyEfficient)
          std::tie(as<ethtool_eee>(command).supported, as<ethtool_eee>(command).eee_enabled) =
              *energyEfficient;
        return energyEfficient.has_value();
      default:
        return false;
    }
  }

  /// As the kernel does: who offers sets of another length is told the right one and nothing else.
  bool answerLink(ethtool_link_settings& settings) const {
    const auto words = static_cast<std::int8_t>(supported.size());
    if (settings.link_mode_masks_nwords != words) {
      settings.link_mode_masks_nwords = static_cast<std::int8_t>(-words);
      return true;
    }
    settings.speed = *speed;
    settings.duplex = duplex;
    settings.port = port;
    settings.autoneg = AUTONEG_ENABLE;
    std::ranges::copy(supported, settings.link_mode_masks);
    std::ranges::copy(advertised, settings.link_mode_masks + words);
    return true;
  }
};

}  // namespace ZEB::ethernet::test
