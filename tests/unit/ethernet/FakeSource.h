#pragma once

#include <atomic>
#include <mutex>

#include "snapshot/HostSource.h"

namespace ZEB::ethernet::test {

/// A source whose host tests change under its users, and which counts what it is asked.
class FakeSource : public HostSource {
 public:
  /// What the source is and does; outlives the source, which the inventory owns.
  struct Host {
    std::mutex mutex;
    HostSnapshot snapshot;
    bool changed = false;
    bool failing = false;
    bool inParts = false;  ///< whether links and counters are to be had by themselves
    std::atomic<int> dumps = 0, singles = 0, linkDumps = 0, counterDumps = 0;

    template <class Edit>
    void edit(Edit change) {
      const std::scoped_lock lock(mutex);
      change(snapshot);
      changed = true;
    }
  };

  explicit FakeSource(Host& host) : _host(host) {}

  Outcome<HostSnapshot> readAll() override {
    ++_host.dumps;
    const std::scoped_lock lock(_host.mutex);
    if (_host.failing) return Failure{5, "the kernel is silent"};
    _host.changed = false;
    return _host.snapshot;
  }

  Outcome<HostSnapshot> readOne(std::uint32_t index) override {
    ++_host.singles;
    const std::scoped_lock lock(_host.mutex);
    if (_host.failing) return Failure{5, "the kernel is silent"};
    HostSnapshot one = _host.snapshot;
    std::erase_if(one.links,
                  [&](const LinkFacts& link) { return link.index != index && link.masterIndex != index; });
    return one;
  }

  Outcome<std::optional<HostSnapshot>> readLinks() override {
    const std::scoped_lock lock(_host.mutex);
    if (!_host.inParts) return std::optional<HostSnapshot>();
    ++_host.linkDumps;
    HostSnapshot links;
    links.sampleTime = _host.snapshot.sampleTime;
    links.links = _host.snapshot.links;
    return std::optional(std::move(links));
  }

  Outcome<std::optional<CounterSnapshot>> readCounters() override {
    const std::scoped_lock lock(_host.mutex);
    if (!_host.inParts || _host.changed) return std::optional<CounterSnapshot>();
    ++_host.counterDumps;
    CounterSnapshot counters;
    counters.sampleTime = _host.snapshot.sampleTime;
    for (const LinkFacts& link : _host.snapshot.links)
      counters.interfaces.push_back(
          {link.index, link.statistics.value_or(LinkStatistics{}), link.ethtool.mac});
    return std::optional(std::move(counters));
  }

  bool announced() override {
    const std::scoped_lock lock(_host.mutex);
    return _host.changed;
  }

 private:
  Host& _host;
};

}  // namespace ZEB::ethernet::test
