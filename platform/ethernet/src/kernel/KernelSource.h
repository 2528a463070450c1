#pragma once

#include <memory>

#include "kernel/DeviceMemory.h"
#include "kernel/KernelQueries.h"
#include "kernel/Listener.h"
#include "snapshot/HostSource.h"

namespace ZEB::ethernet {

/// The running kernel, in the network namespace of the thread that first asks. Starts no process. What was
/// announced to change while an answer was put together is asked for again, interface by interface, so that
/// no interface's facts are of different moments.
class KernelSource : public HostSource {
 public:
  /// Sockets are opened with the first question.
  KernelSource() = default;

  Outcome<HostSnapshot> readAll() override;
  Outcome<HostSnapshot> readOne(std::uint32_t index) override;
  Outcome<std::optional<HostSnapshot>> readLinks() override;
  Outcome<std::optional<CounterSnapshot>> readCounters() override;
  bool announced() override;

 private:
  std::optional<Failure> open();
  /// The answer of `dump`: asked for anew when announcements were lost meanwhile, and repaired.
  Outcome<HostSnapshot> settled(Outcome<HostSnapshot> (KernelSource::*dump)());
  Outcome<HostSnapshot> dumpAll();
  Outcome<HostSnapshot> dumpLinks();
  std::optional<Failure> repair(HostSnapshot& snapshot, const std::set<std::uint32_t>& changed);
  Outcome<HostSnapshot> askWhole(std::uint32_t index);
  Outcome<HostSnapshot> askOne(std::uint32_t index);
  Announcements hear();
  Outcome<std::vector<RouteFacts>> routes();

  std::unique_ptr<Listener> _listener;
  std::unique_ptr<KernelQueries> _queries;
  DeviceMemory _devices;
  /// Default routes as of the last dump of them; nothing once some may have changed. A question about one
  /// interface then needs no walk over the whole routing table.
  std::optional<std::vector<RouteFacts>> _routes;
  bool _announced = true;  ///< something was heard since the last whole answer began, or there was none
};

}  // namespace ZEB::ethernet
