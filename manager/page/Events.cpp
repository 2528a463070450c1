#include "page/Events.h"

#include <sys/eventfd.h>

#include <charconv>
#include <random>

namespace ZebManager {
namespace {

/// Beside the state of a large machine.
constexpr std::size_t kMostWaiting = 16U << 20;
constexpr std::size_t kMostKept = 2U << 20;

std::string newRun() {
  std::random_device device;
  return std::to_string(device()) + "-";
}

}  // namespace

EventQueue::EventQueue() : _ready(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

void EventQueue::add(const Text& event) {
  const std::lock_guard lock(_mutex);
  if (_behind) return;
  _behind = _bytes + event->size() > kMostWaiting;
  if (_behind) {
    _waiting.clear();
  } else {
    _bytes += event->size();
    _waiting.push_back(event);
  }
  eventfd_write(_ready.get(), 1);
}

bool EventQueue::takeInto(std::string& bytes) {
  const std::lock_guard lock(_mutex);
  eventfd_t ignored = 0;
  eventfd_read(_ready.get(), &ignored);
  for (const Text& event : _waiting) bytes += *event;
  _waiting.clear();
  _bytes = 0;
  return !_behind;
}

Events::Events() : _run(newRun()) {}

EventQueue::Text Events::textOf(std::string_view name, const std::string& data) const {
  std::string text = "id: " + _run + std::to_string(_last) + "\nevent: ";
  text.append(name).append("\ndata: ").append(data).append("\n\n");
  return std::make_shared<const std::string>(std::move(text));
}

void Events::publish(std::string_view name, const std::string& data) {
  ++_last;
  const EventQueue::Text text = textOf(name, data);
  _kept.push_back(text);
  for (_keptBytes += text->size(); _keptBytes > kMostKept; _kept.pop_front())
    _keptBytes -= _kept.front()->size();
  for (const auto& page : _pages) {
    if (const auto open = page.lock()) open->add(text);
  }
}

void Events::tell(EventQueue& page, std::string_view name, const std::string& data) const {
  page.add(textOf(name, data));
}

bool Events::catchUp(EventQueue& page, const std::string& lastId) const {
  if (!lastId.starts_with(_run)) return false;
  std::uint64_t had = 0;
  const char* const end = lastId.data() + lastId.size();
  const auto [stop, error] = std::from_chars(lastId.data() + _run.size(), end, had);
  if (error != std::errc() || stop != end || had > _last || _last - had > _kept.size()) return false;
  for (std::size_t i = _kept.size() - (_last - had); i < _kept.size(); ++i) page.add(_kept[i]);
  return true;
}

std::size_t Events::pages() {
  std::erase_if(_pages, [](const auto& page) { return page.expired(); });
  return _pages.size();
}

}  // namespace ZebManager
