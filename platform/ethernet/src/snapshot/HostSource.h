#pragma once

#include <cstdint>

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

  /// Whether anything may have changed since the last `readAll` began.
  virtual bool announced() = 0;
};

}  // namespace ZEB::ethernet
