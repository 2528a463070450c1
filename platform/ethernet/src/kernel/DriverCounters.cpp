#include "kernel/DriverCounters.h"

#include <algorithm>
#include <array>
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

}  // namespace ZEB::ethernet
