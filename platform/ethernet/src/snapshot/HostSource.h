#pragma once

#include <cstdint>
#include <optional>

#include "snapshot/HostSnapshot.h"
#include "snapshot/Outcome.h"

namespace ZEB::ethernet {

/// Where snapshots come from. Not safe to use from several threads; the inventory serialises its use.
class HostSource {
 public:
  virtual ~HostSource() = default;

  /// Everything. What was announced before this began counts as seen.
  virtual Outcome<HostSnapshot> readAll() = 0;

  /// One interface with its members, addresses and default routes; no link when there is no such interface.
  virtual Outcome<HostSnapshot> readOne(std::uint32_t index) = 0;

  /// `readAll` without addresses and routes, which settles nothing of what was announced. None where that is
  /// no cheaper.
  virtual Outcome<std::optional<HostSnapshot>> readLinks() { return std::optional<HostSnapshot>(); }

  /// The counters of all interfaces, all else being as the last `readAll` had it. None when something was
  /// announced since, and where that is no cheaper than everything.
  virtual Outcome<std::optional<CounterSnapshot>> readCounters() { return std::optional<CounterSnapshot>(); }

  /// Whether anything may have changed since the last `readAll` began.
  virtual bool announced() = 0;
};

}  // namespace ZEB::ethernet
