// Commands that wait for alerts.
#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "isolation/Frame.h"
#include "isolation/IndicationFilter.h"
#include "posix/FileDescriptor.h"

namespace ZebManager {

/// Alerts on their way to one command. What it does not read is kept up to a bound; beyond it the command
/// has fallen behind and gets what is kept, and the reason. Safe from any thread.
class LocalWatcher {
 public:
  explicit LocalWatcher(IndicationFilter filter);

  const IndicationFilter filter;

  void add(const std::string& element);
  /// Readable when there is something to take.
  int ready() const { return _ready.get(); }
  /// False when it was the last.
  bool takeInto(FrameWriter& writer);

 private:
  const ZEB::FileDescriptor _ready;
  std::mutex _mutex;
  std::deque<Frame> _waiting;
  std::size_t _bytes = 0;
  bool _behind = false;
};

/// Safe from any thread.
class LocalWatchers {
 public:
  /// `changed` is called after every change of what is wanted, on the thread that made it.
  explicit LocalWatchers(std::function<void()> changed) : _changed(std::move(changed)) {}

  /// Null when there are too many.
  std::shared_ptr<LocalWatcher> add(const std::string& query);
  void remove(const LocalWatcher& watcher);

  std::vector<IndicationFilter> filters() const;
  /// To those among the names that are watchers. Returns the others.
  std::vector<std::string> deliver(const std::vector<std::string>& names, const std::string& element);

 private:
  const std::function<void()> _changed;
  mutable std::mutex _mutex;
  std::vector<std::shared_ptr<LocalWatcher>> _watchers;
  unsigned _last = 0;
};

}  // namespace ZebManager
