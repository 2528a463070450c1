#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "posix/FileDescriptor.h"
#include "snapshot/HostSnapshot.h"

namespace ZEB::ethernet {

/// Where a driver keeps the counters that are reported, among all that it has: found once by their names.
struct CounterPlaces {
  std::uint32_t total = 0;
  struct Place {
    std::uint32_t position;
    std::optional<std::uint64_t> MacStatistics::*counter;
  };
  std::vector<Place> places;
};

/// Which of a driver's counters mean what. Drivers name alike things in many ways; where one has several of
/// the names, the plainest counts.
CounterPlaces findCounters(const std::vector<std::string>& names);

/// The questions that ethtool's netlink has no answer to.
class EthtoolIoctl {
 public:
  EthtoolIoctl();

  /// Null when the driver says nothing.
  std::shared_ptr<const DriverFacts> driver(const std::string& interface) const;
  std::optional<CounterPlaces> counters(const std::string& interface) const;
  /// Fills what `places` knows. False when the driver's counters are no longer those; then nothing is filled.
  bool readCounters(const std::string& interface, const CounterPlaces& places,
                    MacStatistics& statistics) const;

 private:
  bool ask(const std::string& interface, void* command) const;

  FileDescriptor _socket;
};

}  // namespace ZEB::ethernet
