#include "kernel/EthtoolIoctl.h"

#include <linux/ethtool.h>
#include <linux/if.h>
#include <linux/sockios.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>

namespace ZEB::ethernet {
namespace {

struct CounterName {
  std::string_view name;
  std::optional<std::uint64_t> MacStatistics::*counter;
};

// The plainest name of each counter first.
constexpr auto kCounterNames = std::to_array<CounterName>({
    {"rx_align_errors", &MacStatistics::alignmentErrors},
    {"rx_alignment_errors", &MacStatistics::alignmentErrors},
    {"align_errors", &MacStatistics::alignmentErrors},
    {"frame_align", &MacStatistics::alignmentErrors},
    {"rx_frame_errors", &MacStatistics::alignmentErrors},
    {"rx_fcs_errors", &MacStatistics::fcsErrors},
    {"rx_crc_errors", &MacStatistics::fcsErrors},
    {"rx_crc_errors_phy", &MacStatistics::fcsErrors},
    {"port.rx_crc_errors", &MacStatistics::fcsErrors},
    {"tx_single_collisions", &MacStatistics::singleCollisions},
    {"tx_single_coll_ok", &MacStatistics::singleCollisions},
    {"tx_ok_1col", &MacStatistics::singleCollisions},
    {"tx_multi_collisions", &MacStatistics::multipleCollisions},
    {"tx_mult_collisions", &MacStatistics::multipleCollisions},
    {"tx_multi_coll_ok", &MacStatistics::multipleCollisions},
    {"tx_ok_mcol", &MacStatistics::multipleCollisions},
    {"tx_deferred", &MacStatistics::deferred},
    {"tx_deferred_ok", &MacStatistics::deferred},
    {"tx_late_collisions", &MacStatistics::lateCollisions},
    {"tx_abort_late_coll", &MacStatistics::lateCollisions},
    {"tx_window_errors", &MacStatistics::lateCollisions},
    {"tx_excessive_collisions", &MacStatistics::excessiveCollisions},
    {"tx_excess_collisions", &MacStatistics::excessiveCollisions},
    {"tx_aborted_errors", &MacStatistics::excessiveCollisions},
    {"tx_mac_errors", &MacStatistics::transmitErrors},
    {"tx_internal_mac_errors", &MacStatistics::transmitErrors},
    {"rx_mac_errors", &MacStatistics::receiveErrors},
    {"rx_internal_mac_errors", &MacStatistics::receiveErrors},
});

// Drivers have hundreds of counters at most; a number beyond this is no number.
constexpr std::uint32_t kMostCounters = 65536;

// The kernel writes as many as the driver has by then, whatever it was offered: room for some more.
constexpr std::size_t kSpareCounters = 1024;

std::optional<std::string> driverText(const char* text, std::size_t size) {
  std::string value(text, strnlen(text, size));
  const bool none = value.empty() || value == "N/A";
  return none ? std::nullopt : std::optional(std::move(value));
}

/// A command with room for `bytes` behind its fixed part.
template <class Command>
std::vector<std::uint64_t> room(std::size_t bytes) {
  return std::vector<std::uint64_t>((sizeof(Command) + bytes + 7) / 8);
}

}  // namespace

CounterPlaces findCounters(const std::vector<std::string>& names) {
  CounterPlaces found;
  found.total = static_cast<std::uint32_t>(names.size());
  for (const CounterName& known : kCounterNames) {
    const bool had =
        std::ranges::any_of(found.places, [&](const auto& p) { return p.counter == known.counter; });
    const auto at = had ? names.end() : std::ranges::find(names, known.name);
    if (at != names.end())
      found.places.push_back({static_cast<std::uint32_t>(at - names.begin()), known.counter});
  }
  return found;
}

EthtoolIoctl::EthtoolIoctl() : _socket(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {}

bool EthtoolIoctl::ask(const std::string& interface, void* command) const {
  ifreq request{};
  if (interface.size() >= sizeof request.ifr_name) return false;
  interface.copy(request.ifr_name, interface.size());
  request.ifr_data = static_cast<char*>(command);
  return _socket && ::ioctl(_socket.get(), SIOCETHTOOL, &request) == 0;
}

std::shared_ptr<const DriverFacts> EthtoolIoctl::driver(const std::string& interface) const {
  ethtool_drvinfo info{};
  info.cmd = ETHTOOL_GDRVINFO;
  if (!ask(interface, &info)) return nullptr;
  return std::make_shared<DriverFacts>(DriverFacts{driverText(info.driver, sizeof info.driver),
                                                   driverText(info.version, sizeof info.version),
                                                   driverText(info.fw_version, sizeof info.fw_version)});
}

std::optional<CounterPlaces> EthtoolIoctl::counters(const std::string& interface) const {
  ethtool_drvinfo info{};
  info.cmd = ETHTOOL_GDRVINFO;
  if (!ask(interface, &info) || info.n_stats == 0 || info.n_stats > kMostCounters) return std::nullopt;
  auto memory = room<ethtool_gstrings>((info.n_stats + kSpareCounters) * ETH_GSTRING_LEN);
  auto* strings = reinterpret_cast<ethtool_gstrings*>(memory.data());
  strings->cmd = ETHTOOL_GSTRINGS;
  strings->string_set = ETH_SS_STATS;
  strings->len = info.n_stats;
  if (!ask(interface, strings) || strings->len > info.n_stats) return std::nullopt;
  std::vector<std::string> names;
  for (std::uint32_t i = 0; i < strings->len; ++i) {
    const char* name = reinterpret_cast<const char*>(strings->data) + std::size_t{i} * ETH_GSTRING_LEN;
    names.emplace_back(name, strnlen(name, ETH_GSTRING_LEN));
  }
  return findCounters(names);
}

bool EthtoolIoctl::readCounters(const std::string& interface, const CounterPlaces& places,
                                MacStatistics& statistics) const {
  auto memory = room<ethtool_stats>((places.total + kSpareCounters) * sizeof(std::uint64_t));
  auto* stats = reinterpret_cast<ethtool_stats*>(memory.data());
  stats->cmd = ETHTOOL_GSTATS;
  stats->n_stats = places.total;
  if (!ask(interface, stats) || stats->n_stats != places.total) return false;
  const std::uint64_t* values = memory.data() + sizeof(ethtool_stats) / sizeof(std::uint64_t);
  for (const auto& place : places.places) statistics.*place.counter = values[place.position];
  return true;
}

}  // namespace ZEB::ethernet
