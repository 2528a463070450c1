#pragma once

#include <filesystem>
#include <functional>
#include <memory>

#include "kernel/DeviceMemory.h"
#include "kernel/KernelQueries.h"
#include "kernel/Listener.h"
#include "kernel/ParentDevices.h"
#include "snapshot/HostSource.h"

namespace ZEB::ethernet {

/// What the kernel is asked and heard through: the place where tests put something else.
struct KernelAccess {
  std::unique_ptr<KernelQueries> queries;
  Listener listener;
  EthtoolCall ethtool;
  std::filesystem::path root = "/";  ///< where "sys" is found

  /// The running kernel, in the network namespace of the calling thread.
  static Outcome<KernelAccess> open();
};

/// The running kernel, in the network namespace of the thread that first asks. Starts no process. What was
/// announced to change while an answer was put together is asked for again, interface by interface, so that
/// no interface's facts are of different moments.
class KernelSource : public HostSource {
 public:
  /// `open` is called with the first question.
  explicit KernelSource(std::function<Outcome<KernelAccess>()> open = KernelAccess::open)
      : _open(std::move(open)) {}

  Outcome<HostSnapshot> readAll() override;
  Outcome<HostSnapshot> readOne(std::uint32_t index) override;
  Outcome<std::optional<HostSnapshot>> readLinks() override;
  Outcome<std::optional<CounterSnapshot>> readCounters() override;
  bool announced() override;

 private:
  /// What is asked and heard through, and what it remembers.
  struct Kernel {
    explicit Kernel(KernelAccess access);

    std::unique_ptr<KernelQueries> queries;
    Listener listener;
    EthtoolIoctl ioctl;
    DeviceMemory devices;
    ParentDevices parents;
  };

  std::optional<Failure> open();
  /// The answer of `dump`: asked for anew when announcements were lost meanwhile, and repaired.
  Outcome<HostSnapshot> settled(Outcome<HostSnapshot> (KernelSource::*dump)());
  Outcome<HostSnapshot> dumpAll();
  Outcome<HostSnapshot> dumpLinks();
  std::optional<Failure> repair(HostSnapshot& snapshot, const std::set<std::uint32_t>& changed);
  Outcome<HostSnapshot> askWhole(std::uint32_t index);
  Outcome<HostSnapshot> askOne(std::uint32_t index);
  /// Adds what is not asked of the kernel with the links themselves: the devices behind them and what ethtool
  /// says. Links are in the order of their numbers.
  void addSettings(std::vector<LinkFacts>& links);
  void addSettings(LinkFacts& link);
  Announcements hear();
  Outcome<std::vector<RouteFacts>> routes();
  Outcome<std::vector<RuleFacts>> rules();
  std::optional<Failure> addRoutes(HostSnapshot& snapshot);

  std::function<Outcome<KernelAccess>()> _open;
  std::unique_ptr<Kernel> _kernel;  ///< null before the first question
  /// Default routes as of the last dump of them; nothing once some may have changed. A question about one
  /// interface then needs no walk over the whole routing table.
  std::optional<std::vector<RouteFacts>> _routes;
  /// Routing rules, every change of which is announced.
  std::optional<std::vector<RuleFacts>> _rules;
  bool _announced = true;  ///< something was heard since the last whole answer began, or there was none
};

}  // namespace ZEB::ethernet
