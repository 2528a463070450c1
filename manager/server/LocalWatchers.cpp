#include "server/LocalWatchers.h"

#include <sys/eventfd.h>

#include <algorithm>

namespace ZebManager {
namespace {

constexpr std::size_t kMostWatchers = 16;
constexpr std::size_t kMostBytes = 4U << 20;
/// No name that a client can give a filter begins so.
constexpr char kPrefix[] = "\nwatch ";

}  // namespace

LocalWatcher::LocalWatcher(IndicationFilter wanted)
    : filter(std::move(wanted)), _ready(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

void LocalWatcher::add(const std::string& element) {
  const std::lock_guard lock(_mutex);
  if (_behind) return;
  if (_bytes + element.size() > kMostBytes) {
    _behind = true;
    _waiting.push_back({Frame::Kind::Refusal, 0, "alerts were not read for too long, and some are lost"});
  } else {
    _bytes += element.size();
    _waiting.push_back({Frame::Kind::Indication, 0, packTexts({element})});
  }
  eventfd_write(_ready.get(), 1);
}

bool LocalWatcher::takeInto(FrameWriter& writer) {
  const std::lock_guard lock(_mutex);
  eventfd_t ignored = 0;
  eventfd_read(_ready.get(), &ignored);
  for (const Frame& frame : _waiting) writer.add(frame);
  _waiting.clear();
  _bytes = 0;
  return !_behind;
}

std::shared_ptr<LocalWatcher> LocalWatchers::add(const std::string& query) {
  std::shared_ptr<LocalWatcher> watcher;
  {
    const std::lock_guard lock(_mutex);
    if (_watchers.size() >= kMostWatchers) return nullptr;
    watcher =
        std::make_shared<LocalWatcher>(IndicationFilter{kPrefix + std::to_string(++_last), query, "WQL"});
    _watchers.push_back(watcher);
  }
  _changed();
  return watcher;
}

void LocalWatchers::remove(const LocalWatcher& watcher) {
  {
    const std::lock_guard lock(_mutex);
    std::erase_if(_watchers, [&](const auto& other) { return other.get() == &watcher; });
  }
  _changed();
}

std::vector<IndicationFilter> LocalWatchers::filters() const {
  const std::lock_guard lock(_mutex);
  std::vector<IndicationFilter> all;
  for (const auto& watcher : _watchers) all.push_back(watcher->filter);
  return all;
}

std::vector<std::string> LocalWatchers::deliver(const std::vector<std::string>& names,
                                                const std::string& element) {
  std::vector<std::string> others;
  const std::lock_guard lock(_mutex);
  for (const std::string& name : names) {
    if (!name.starts_with(kPrefix)) {
      others.push_back(name);
      continue;
    }
    const auto found =
        std::ranges::find(_watchers, name, [](const auto& watcher) { return watcher->filter.name; });
    if (found != _watchers.end()) (*found)->add(element);
  }
  return others;
}

}  // namespace ZebManager
