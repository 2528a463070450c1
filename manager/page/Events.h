// Events on their way to pages, as a browser takes them.
#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "posix/FileDescriptor.h"

namespace ZebManager {

/// Of one page. What it does not read is kept up to a bound; beyond that its stream ends, and the page, which
/// then comes again, is told everything anew. Safe from any thread.
class EventQueue {
 public:
  using Text = std::shared_ptr<const std::string>;

  EventQueue();

  void add(const Text& event);
  /// Readable when there is something to take.
  int ready() const { return _ready.get(); }
  /// False when these are the last.
  bool takeInto(std::string& bytes);

 private:
  const ZEB::FileDescriptor _ready;
  std::mutex _mutex;
  std::deque<Text> _waiting;
  std::size_t _bytes = 0;
  bool _behind = false;
};

/// Numbers events, remembers the last of them for pages that were away, and gives each to every page. Not
/// safe from several threads.
class Events {
 public:
  Events();

  void publish(std::string_view name, const std::string& data);
  /// An event for one page alone, with the number of the last that all have had.
  void tell(EventQueue& page, std::string_view name, const std::string& data) const;

  void add(const std::shared_ptr<EventQueue>& page) { _pages.push_back(page); }
  /// Gives what came after the event of that id. False when it is not known what that was.
  bool catchUp(EventQueue& page, const std::string& lastId) const;
  /// How many are open.
  std::size_t pages();

 private:
  EventQueue::Text textOf(std::string_view name, const std::string& data) const;

  const std::string _run;  ///< tells the ids of this process from those of others
  std::uint64_t _last = 0;
  std::deque<EventQueue::Text> _kept;  ///< the newest, up to `_last`
  std::size_t _keptBytes = 0;
  std::vector<std::weak_ptr<EventQueue>> _pages;
};

}  // namespace ZebManager
