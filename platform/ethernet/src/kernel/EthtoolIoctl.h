#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "kernel/DriverCounters.h"
#include "snapshot/HostSnapshot.h"

namespace ZEB::ethernet {

/// Asks a driver: the place where tests put something else. `command` is one of ethtool's structures, into
/// which the answer is written. False when the driver refuses.
using EthtoolCall = std::function<bool(const std::string& interface, void* command)>;

/// The kernel, in the network namespace of the calling thread.
EthtoolCall kernelEthtool();

/// The questions that ethtool's netlink has no answer to.
class EthtoolIoctl {
 public:
  explicit EthtoolIoctl(EthtoolCall call = kernelEthtool()) : _call(std::move(call)) {}

  /// Null when the driver says nothing.
  std::shared_ptr<const DriverFacts> driver(const std::string& interface) const;
  std::optional<CounterPlaces> counters(const std::string& interface) const;
  /// Fills what `places` knows and `statistics` does not. False when the driver's counters are no longer
  /// those; then nothing is filled.
  bool readCounters(const std::string& interface, const CounterPlaces& places,
                    MacStatistics& statistics) const;
  std::optional<HardwareAddress> permanentAddress(const std::string& interface) const;

  /// Adds what ethtool's netlink says of a link, for kernels that have none: as much of it as there is an
  /// ioctl for.
  void addSettings(LinkFacts& link);

 private:
  void addLinkSettings(LinkFacts& link);

  EthtoolCall _call;
  std::int8_t _modeWords = 0;  ///< in each of the kernel's sets of link modes; 0 until it has said how many
};

}  // namespace ZEB::ethernet
