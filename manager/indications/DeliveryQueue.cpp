#include "indications/DeliveryQueue.h"

#include <algorithm>
#include <random>
#include <utility>

#include "indications/Delivery.h"

namespace ZebManager {
namespace {

constexpr std::size_t kDropsBetweenLines = 1000;
/// How exactly the file knows how long the machine has been running.
constexpr std::int64_t kTimeBetweenNotes = 60;
constexpr std::int64_t kPauseOfFile = 1;  // seconds

/// A name that no other sequence of any server has.
std::string newContext() {
  constexpr char kDigits[] = "0123456789abcdef";
  std::random_device random;
  std::string context = "zebcim:";
  for (int i = 0; i < 32; ++i) context += kDigits[random() % 16];
  return context;
}

std::string sizeText(std::size_t size, const char* unit) {
  return std::to_string(size) + " " + unit;
}

}  // namespace

DeliveryQueue::DeliveryQueue(const DeliverySettings& settings, LogLine log)
    : _settings(settings), _log(std::move(log)), _file(settings.directory, _log) {
  try {
    read();
  } catch (const SqliteError& error) {
    if (!error.damaged()) throw;
    beginAnew(error.what());
  }
}

DeliveryQueue::~DeliveryQueue() {
  _nextTry = 0;
  save();
}

std::int64_t DeliveryQueue::now() const {
  return std::chrono::floor<std::chrono::seconds>(_settings.clock().time_since_epoch()).count();
}

DeliveryQueue::Line& DeliveryQueue::lineOf(const std::string& handler) {
  const auto [line, fresh] = _lines.try_emplace(handler);
  if (fresh) line->second.sequence.context = newContext();
  return line->second;
}

void DeliveryQueue::read() {
  const auto takeSequence = [this](const std::string& handler, Sequence sequence) {
    _lines[handler].sequence = std::move(sequence);
  };
  const auto takeRow = [this](QueueFile::Row row) {
    const std::string handler = row.handler;
    add(handler, std::move(row), nullptr);
  };
  _file.read(takeSequence, takeRow, _savedTime);
  shiftTimes();
}

/// The machine has been started since: its time began anew. What is in the file is as old as it was then.
void DeliveryQueue::shiftTimes() {
  std::int64_t latest = _savedTime;
  for (const auto& [handler, line] : _lines) {
    for (const Waiting& waiting : line.waiting) latest = std::max(latest, waiting.queued);
  }
  const std::int64_t ahead = latest - now();
  if (ahead <= 0) return;
  for (auto& [handler, line] : _lines) {
    for (Waiting& waiting : line.waiting) waiting.queued -= ahead;
  }
  _shift = ahead;
  _savedTime = now() - kTimeBetweenNotes;
}

void DeliveryQueue::add(const std::string& handler, QueueFile::Row row,
                        std::shared_ptr<const std::string> held) {
  Line& line = lineOf(handler);
  _lastId = std::max(_lastId, row.id);
  line.sequence.next = std::max(line.sequence.next, row.number + 1);
  line.bytes += row.bytes;
  _bytes += row.bytes;
  if (held) {
    line.held += row.bytes;
    _held += row.bytes;
  }
  const std::string& subscription = *line.subscriptions.insert(std::move(row.subscription)).first;
  line.waiting.push_back({row.id, row.number, row.queued, row.bytes, &subscription, std::move(held)});
}

DeliveryQueue::Entry DeliveryQueue::erase(const std::string& handler, Line& line, Entry entry) {
  line.bytes -= entry->bytes;
  _bytes -= entry->bytes;
  if (entry->held) {
    line.held -= entry->bytes;
    _held -= entry->bytes;
    _changed.insert(handler);
  } else {
    _removed.push_back(entry->id);
  }
  return line.waiting.erase(entry);
}

std::size_t DeliveryQueue::waiting() const {
  std::size_t sum = 0;
  for (const auto& [handler, line] : _lines) sum += line.waiting.size();
  return sum;
}

void DeliveryQueue::put(const std::vector<const Subscription*>& subscriptions, std::string_view element) {
  const auto held = std::make_shared<const std::string>(element);
  for (const Subscription* subscription : subscriptions) {
    const std::string& handler = subscription->handlerName;
    const std::int64_t number = lineOf(handler).sequence.next;
    add(handler, {_lastId + 1, handler, subscription->name, number, now(), element.size()}, held);
    _changed.insert(handler);
    dropSurplus(handler);
  }
  save();
}

/// Of what has come too much for one listener, and then of what takes most of the place that all share.
void DeliveryQueue::dropSurplus(const std::string& handler) {
  Line& line = _lines[handler];
  const bool within = line.waiting.size() < _settings.mostWaiting && _bytes < _settings.mostBytes / 2;
  if (within) line.dropped = 0;
  while (line.waiting.size() > _settings.mostWaiting)
    drop(handler, line, line.waiting.begin(),
         "is full with " + sizeText(_settings.mostWaiting, "indications"));
  while (_bytes > _settings.mostBytes) {
    auto& [longest, its] = *std::ranges::max_element(
        _lines, [](const auto& a, const auto& b) { return a.second.bytes < b.second.bytes; });
    drop(longest, its, its.waiting.begin(),
         "is the longest, and all are full with " + sizeText(_settings.mostBytes, "bytes"));
  }
}

void DeliveryQueue::drop(const std::string& handler, Line& line, Entry entry, const std::string& why) {
  erase(handler, line, entry);
  if (line.dropped++ % kDropsBetweenLines != 0) return;
  _log("the queue for " + handler + " " + why + ": the oldest is dropped, " + std::to_string(line.dropped) +
       " so far");
}

void DeliveryQueue::dropExpired(const std::string& handler, Line& line) {
  const std::int64_t first = now() - std::int64_t{_settings.longestWait.count()};
  std::size_t count = 0;
  for (; !line.waiting.empty() && line.waiting.front().queued < first; ++count)
    erase(handler, line, line.waiting.begin());
  if (count == 0) return;
  _log(sizeText(count, "indications") + " for " + handler + " have waited for more than " +
       std::to_string(_settings.longestWait.count()) + " s: they are dropped");
}

std::optional<QueuedIndication> DeliveryQueue::oldest(const std::string& handler) {
  const auto found = _lines.find(handler);
  if (found == _lines.end()) return std::nullopt;
  Line& line = found->second;
  dropExpired(handler, line);
  save();
  if (line.waiting.empty()) return std::nullopt;
  const Waiting& first = line.waiting.front();
  if (first.held) return QueuedIndication{first.id, line.sequence.context, first.number, *first.held};
  try {
    return QueuedIndication{first.id, line.sequence.context, first.number, _file.element(first.id)};
  } catch (const SqliteError& error) {
    if (!error.damaged()) throw;
    beginAnew(error.what());
  }
  return oldest(handler);
}

void DeliveryQueue::remove(const std::string& handler, std::int64_t id) {
  const auto line = _lines.find(handler);
  if (line == _lines.end()) return;
  auto& waiting = line->second.waiting;
  const auto entry = std::ranges::find(waiting, id, &Waiting::id);
  if (entry == waiting.end()) return;
  erase(handler, line->second, entry);
  save();
}

void DeliveryQueue::keepOnly(const std::set<std::string_view>& subscriptions,
                             const std::set<std::string_view>& handlers) {
  for (auto& [handler, line] : _lines) {
    const auto isGone = [&](const std::string& name) { return !subscriptions.contains(name); };
    if (std::ranges::none_of(line.subscriptions, isGone)) continue;
    for (auto entry = line.waiting.begin(); entry != line.waiting.end();)
      entry = isGone(*entry->subscription) ? erase(handler, line, entry) : std::next(entry);
    std::erase_if(line.subscriptions, isGone);
  }
  std::erase_if(_lines, [&](const auto& line) {
    const bool gone = !handlers.contains(line.first);
    if (gone) _changed.insert(line.first);
    return gone;
  });
  save();
}

/// What the file has not is at the end of a line.
DeliveryQueue::Entry DeliveryQueue::firstHeld(Line& line) {
  return std::ranges::partition_point(line.waiting, [](const Waiting& entry) { return !entry.held; });
}

QueueFile::Change DeliveryQueue::unsaved() {
  QueueFile::Change change{_shift, {}, _removed, {}, now()};
  for (const std::string& handler : _changed) {
    const auto found = _lines.find(handler);
    change.sequences[handler] = found == _lines.end() ? nullptr : &found->second.sequence;
    if (found == _lines.end()) continue;
    Line& line = found->second;
    for (Entry entry = firstHeld(line); entry != line.waiting.end(); ++entry) {
      change.added.push_back(
          {{entry->id, handler, *entry->subscription, entry->number, entry->queued, entry->bytes},
           *entry->held});
    }
  }
  return change;
}

/// A file that takes nothing is tried again after a pause, not with each indication of a storm.
void DeliveryQueue::save() {
  if (_stuck && now() < _nextTry) return dropHeld();
  if (_changed.empty() && _removed.empty() && now() < _savedTime + kTimeBetweenNotes) return;
  try {
    _file.apply(unsaved());
    noteSaved();
  } catch (const SqliteError& error) {
    if (error.damaged()) return beginAnew(error.what());
    noteStuck(error);
  }
}

void DeliveryQueue::noteSaved() {
  for (const std::string& handler : _changed) {
    const auto found = _lines.find(handler);
    if (found == _lines.end()) continue;
    Line& line = found->second;
    for (Entry entry = firstHeld(line); entry != line.waiting.end(); ++entry) entry->held.reset();
    _held -= std::exchange(line.held, 0);
  }
  _changed.clear();
  _removed.clear();
  _shift = 0;
  _savedTime = now();
  if (std::exchange(_stuck, false)) _log("the queue of indications can be written again");
}

void DeliveryQueue::noteStuck(const std::exception& error) {
  _nextTry = now() + kPauseOfFile;
  if (!std::exchange(_stuck, true))
    _log(std::string("the queue of indications goes on in memory, it cannot be written: ") + error.what());
  dropHeld();
}

void DeliveryQueue::dropHeld() {
  while (_held > _settings.mostHeldBytes) {
    auto& [handler, line] = *std::ranges::max_element(
        _lines, [](const auto& a, const auto& b) { return a.second.held < b.second.held; });
    drop(handler, line, firstHeld(line),
         "cannot be written, and the memory is full with " + sizeText(_settings.mostHeldBytes, "bytes"));
  }
}

/// What was in the damaged file is lost; sequences and what is in memory go on in a fresh one.
void DeliveryQueue::beginAnew(const std::string& why) {
  const std::size_t before = waiting();
  for (auto& [handler, line] : _lines) {
    const Entry held = firstHeld(line);
    for (Entry entry = line.waiting.begin(); entry != held; ++entry) {
      line.bytes -= entry->bytes;
      _bytes -= entry->bytes;
    }
    line.waiting.erase(line.waiting.begin(), held);
    _changed.insert(handler);
  }
  _removed.clear();
  if (before > waiting()) _log(sizeText(before - waiting(), "indications") + " are lost with the file");
  try {
    _file.beginAnew(why);
    _file.apply(unsaved());
    noteSaved();
  } catch (const ManagerError& error) {
    noteStuck(error);
  }
}

}  // namespace ZebManager
