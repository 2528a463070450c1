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
    std::atomic<int> dumps = 0, singles = 0;

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

  bool announced() override {
    const std::scoped_lock lock(_host.mutex);
    return _host.changed;
  }

 private:
  Host& _host;
};

}  // namespace ZEB::ethernet::test
