#include "kernel/EthtoolIoctl.h"

#include <linux/ethtool.h>
#include <linux/if.h>
#include <linux/sockios.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

#include <cstring>
#include <vector>

#include "kernel/IoctlDecoders.h"
#include "posix/FileDescriptor.h"

namespace ZEB::ethernet {
namespace {

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

/// The three sets of link modes, each as long as its length can say.
constexpr std::size_t kModeSets = 3 * std::size_t{127} * sizeof(std::uint32_t);

constexpr std::size_t kLongestAddress = 32;

template <class Command>
Bytes bytesOf(const Command& command) {
  return std::as_bytes(std::span(&command, 1));
}

}  // namespace

EthtoolCall kernelEthtool() {
  const auto socket = std::make_shared<FileDescriptor>(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0));
  return [socket](const std::string& interface, void* command) {
    ifreq request{};
    if (interface.size() >= sizeof request.ifr_name) return false;
    interface.copy(request.ifr_name, interface.size());
    request.ifr_data = static_cast<char*>(command);
    return *socket && ::ioctl(socket->get(), SIOCETHTOOL, &request) == 0;
  };
}

std::shared_ptr<const DriverFacts> EthtoolIoctl::driver(const std::string& interface) const {
  ethtool_drvinfo info{};
  info.cmd = ETHTOOL_GDRVINFO;
  if (!_call(interface, &info)) return nullptr;
  return std::make_shared<DriverFacts>(DriverFacts{driverText(info.driver, sizeof info.driver),
                                                   driverText(info.version, sizeof info.version),
                                                   driverText(info.fw_version, sizeof info.fw_version)});
}

std::optional<CounterPlaces> EthtoolIoctl::counters(const std::string& interface) const {
  ethtool_drvinfo info{};
  info.cmd = ETHTOOL_GDRVINFO;
  if (!_call(interface, &info) || info.n_stats == 0 || info.n_stats > kMostCounters) return std::nullopt;
  auto memory = room<ethtool_gstrings>((info.n_stats + kSpareCounters) * ETH_GSTRING_LEN);
  auto* strings = reinterpret_cast<ethtool_gstrings*>(memory.data());
  strings->cmd = ETHTOOL_GSTRINGS;
  strings->string_set = ETH_SS_STATS;
  strings->len = info.n_stats;
  if (!_call(interface, strings) || strings->len > info.n_stats) return std::nullopt;
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
  if (!_call(interface, stats) || stats->n_stats != places.total) return false;
  const std::uint64_t* values = memory.data() + sizeof(ethtool_stats) / sizeof(std::uint64_t);
  for (const auto& place : places.places) {
    auto& counter = statistics.*place.counter;
    if (!counter) counter = values[place.position];
  }
  return true;
}

std::optional<HardwareAddress> EthtoolIoctl::permanentAddress(const std::string& interface) const {
  auto memory = room<ethtool_perm_addr>(kLongestAddress);
  auto* address = reinterpret_cast<ethtool_perm_addr*>(memory.data());
  address->cmd = ETHTOOL_GPERMADDR;
  address->size = kLongestAddress;
  if (!_call(interface, address)) return std::nullopt;
  return decodePermanentAddress(std::as_bytes(std::span(memory)));
}

void EthtoolIoctl::addSettings(LinkFacts& link) {
  addLinkSettings(link);
  // Virtual interfaces have no answer to the rest.
  if (!link.parentDevice) {
    link.ethtool.media.reset();
    return;
  }
  ethtool_value detected{};
  detected.cmd = ETHTOOL_GLINK;
  if (_call(link.name, &detected)) link.ethtool.linkDetected = detected.data != 0;
  ethtool_wolinfo wake{};
  wake.cmd = ETHTOOL_GWOL;
  if (_call(link.name, &wake)) mergeWakeOnLan(bytesOf(wake), link.ethtool);
  ethtool_eee energy{};
  energy.cmd = ETHTOOL_GEEE;
  if (_call(link.name, &energy)) mergeEnergyEfficiency(bytesOf(energy), link.ethtool);
}

/// A kernel that is offered sets of another length than its own says its own, as a negative number.
void EthtoolIoctl::addLinkSettings(LinkFacts& link) {
  for (int i = 0; i < 2; ++i) {
    auto memory = room<ethtool_link_settings>(kModeSets);
    auto* settings = reinterpret_cast<ethtool_link_settings*>(memory.data());
    settings->cmd = ETHTOOL_GLINKSETTINGS;
    settings->link_mode_masks_nwords = _modeWords;
    if (!_call(link.name, settings)) return;
    if (settings->link_mode_masks_nwords > 0)
      return mergeLinkSettings(std::as_bytes(std::span(memory)), link.ethtool);
    _modeWords = static_cast<std::int8_t>(-settings->link_mode_masks_nwords);
  }
}

}  // namespace ZEB::ethernet
