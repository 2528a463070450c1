#include "indications/DeliveryQueue.h"

#include <algorithm>
#include <array>
#include <random>
#include <utility>

#include "indications/Delivery.h"

namespace ZebManager {
namespace {

constexpr std::array kUpgrades = {
    "CREATE TABLE listener (handler TEXT PRIMARY KEY NOT NULL, context TEXT NOT NULL, next INTEGER NOT NULL)"
    " STRICT, WITHOUT ROWID;"
    "CREATE TABLE indication (id INTEGER PRIMARY KEY AUTOINCREMENT, handler TEXT NOT NULL,"
    " subscription TEXT NOT NULL, number INTEGER NOT NULL, queued INTEGER NOT NULL, element TEXT NOT NULL) "
    "STRICT;"
    "CREATE INDEX of_listener ON indication (handler, id);",
};

constexpr std::size_t kDropsBetweenLines = 1000;

/// A name that no other sequence of any server has.
std::string newContext() {
  constexpr char kDigits[] = "0123456789abcdef";
  std::random_device random;
  std::string context = "zebcim:";
  for (int i = 0; i < 32; ++i) context += kDigits[random() % 16];
  return context;
}

std::size_t sizeAt(const SqliteStatement& row, int column) {
  return static_cast<std::size_t>(row.number(column));
}

}  // namespace

/// Once more on a fresh file when it turns out to be damaged.
template <class Work>
auto DeliveryQueue::onFile(const Work& work) {
  try {
    return work();
  } catch (const SqliteError& error) {
    if (!error.damaged()) throw;
    _file.beginAnew(error.what());
  }
  open();
  return work();
}

// A burst of alerts has to get into the file without waiting for the disk once for each: SQLite writes them
// at once, which is enough for the end of the process, and waits for the disk at its checkpoints.
DeliveryQueue::DeliveryQueue(const DeliverySettings& settings, LogLine log)
    : _settings(settings), _log(std::move(log)), _file(settings.directory, "delivery.db", kUpgrades, _log) {
  onFile([this] { open(); });
}

void DeliveryQueue::open() {
  _file.execute("PRAGMA synchronous = NORMAL");
  _file.prepare("UPDATE indication SET queued = ?1 WHERE queued > ?1").with(now()).run();
  _lines.clear();
  _ofSubscription.clear();
  _bytes = 0;
  SqliteStatement known = _file.prepare("SELECT handler FROM listener");
  while (known.step()) _lines[known.text(0)];
  SqliteStatement counts = _file.prepare(
      "SELECT handler, subscription, count(*), sum(length(CAST(element AS BLOB))) FROM indication"
      " GROUP BY handler, subscription");
  while (counts.step()) {
    Line& line = _lines[counts.text(0)];
    line.count += sizeAt(counts, 2);
    line.bytes += sizeAt(counts, 3);
    _bytes += sizeAt(counts, 3);
    _ofSubscription[counts.text(1)] += sizeAt(counts, 2);
  }
}

std::int64_t DeliveryQueue::now() const {
  return std::chrono::floor<std::chrono::seconds>(_settings.clock().time_since_epoch()).count();
}

std::int64_t DeliveryQueue::oldestTime() const {
  return now() - std::int64_t{_settings.longestWait.count()};
}

std::size_t DeliveryQueue::waiting() const {
  std::size_t sum = 0;
  for (const auto& [handler, line] : _lines) sum += line.count;
  return sum;
}

void DeliveryQueue::put(const std::vector<const Subscription*>& subscriptions, std::string_view element) {
  try {
    onFile([&] { write(subscriptions, element); });
  } catch (const SqliteError&) {
    for (const Subscription* subscription : subscriptions) ++_lines[subscription->handlerName].lost;
    throw;
  }
  for (const Subscription* subscription : subscriptions) {
    Line& line = _lines[subscription->handlerName];
    line.lost = 0;
    ++line.count;
    line.bytes += element.size();
    _bytes += element.size();
    ++_ofSubscription[subscription->name];
  }
  for (const Subscription* subscription : subscriptions) dropSurplus(subscription->handlerName);
}

void DeliveryQueue::write(const std::vector<const Subscription*>& subscriptions, std::string_view element) {
  SqliteTransaction transaction(_file);
  std::set<std::string> handlers;
  for (const Subscription* subscription : subscriptions) {
    if (handlers.insert(subscription->handlerName).second) beginLine(subscription->handlerName);
    append(*subscription, element);
  }
  transaction.commit();
}

/// The sequence of a listener, behind the numbers of what could not be put.
void DeliveryQueue::beginLine(const std::string& handler) {
  _file.prepare("INSERT INTO listener VALUES (?1, ?2, 0) ON CONFLICT DO NOTHING")
      .with(handler, newContext())
      .run();
  const auto lost = static_cast<std::int64_t>(_lines[handler].lost);
  if (lost > 0)
    _file.prepare("UPDATE listener SET next = next + ?2 WHERE handler = ?1").with(handler, lost).run();
}

void DeliveryQueue::append(const Subscription& subscription, std::string_view element) {
  _file
      .prepare(
          "INSERT INTO indication (handler, subscription, number, queued, element)"
          " SELECT ?1, ?2, next, ?3, ?4 FROM listener WHERE handler = ?1")
      .with(subscription.handlerName, subscription.name, now(), element)
      .run();
  _file.prepare("UPDATE listener SET next = next + 1 WHERE handler = ?1")
      .with(subscription.handlerName)
      .run();
}

/// Of what has come too much for one listener, and then of what takes most of the place that all share.
void DeliveryQueue::dropSurplus(const std::string& handler) {
  const std::string most = std::to_string(_settings.mostWaiting) + " indications";
  while (_lines[handler].count > _settings.mostWaiting) dropOldest(handler, "is full with " + most);
  const std::string all = std::to_string(_settings.mostBytes) + " bytes";
  while (_bytes > _settings.mostBytes) {
    const auto longest = std::ranges::max_element(
        _lines, [](const auto& a, const auto& b) { return a.second.bytes < b.second.bytes; });
    dropOldest(longest->first, "is the longest, and all are full with " + all);
  }
}

void DeliveryQueue::dropOldest(const std::string& handler, const std::string& why) {
  erase("id = (SELECT min(id) FROM indication WHERE handler = ?1)", handler);
  std::size_t& dropped = _lines[handler].dropped;
  if (dropped++ % kDropsBetweenLines != 0) return;
  _log("the queue for " + handler + " " + why + ": the oldest is dropped, " + std::to_string(dropped) +
       " so far");
}

/// How many it were.
template <class... Values>
std::size_t DeliveryQueue::erase(const std::string& condition, const Values&... values) {
  SqliteStatement gone = _file.prepare(("DELETE FROM indication WHERE " + condition +
                                        " RETURNING handler, subscription, length(CAST(element AS BLOB))")
                                           .c_str());
  gone.with(values...);
  std::size_t count = 0;
  for (; gone.step(); ++count) {
    Line& line = _lines[gone.text(0)];
    --line.count;
    line.bytes -= sizeAt(gone, 2);
    _bytes -= sizeAt(gone, 2);
    if (--_ofSubscription[gone.text(1)] == 0) _ofSubscription.erase(gone.text(1));
  }
  return count;
}

/// What is done with goes, and what has waited too long. Without place on the disk it goes later: it is not
/// looked at meanwhile.
void DeliveryQueue::cleanUp(const std::string& handler) {
  try {
    const Line& line = _lines[handler];
    if (line.done > 0) erase("handler = ?1 AND id <= ?2", handler, line.done);
    const std::size_t expired = erase("handler = ?1 AND queued < ?2", handler, oldestTime());
    if (expired > 0) {
      _log(std::to_string(expired) + " indications for " + handler + " have waited for more than " +
           std::to_string(_settings.longestWait.count()) + " s: they are dropped");
    }
    if (line.count < _settings.mostWaiting && _bytes < _settings.mostBytes) _lines[handler].dropped = 0;
    if (line.count == 0) _file.shrink();
    _stuck = false;
  } catch (const SqliteError& error) {
    if (error.damaged()) throw;
    if (!std::exchange(_stuck, true))
      _log(std::string("what was sent cannot be removed yet: ") + error.what());
  }
}

std::optional<QueuedIndication> DeliveryQueue::oldest(const std::string& handler) {
  return onFile([&]() -> std::optional<QueuedIndication> {
    cleanUp(handler);
    SqliteStatement select = _file.prepare(
        "SELECT id, context, number, element FROM indication JOIN listener USING (handler)"
        " WHERE handler = ?1 AND id > ?2 AND queued >= ?3 ORDER BY id LIMIT 1");
    select.with(handler, _lines[handler].done, oldestTime());
    if (!select.step()) return std::nullopt;
    return QueuedIndication{select.number(0), select.text(1), select.number(2), select.text(3)};
  });
}

void DeliveryQueue::remove(const std::string& handler, std::int64_t id) {
  std::int64_t& done = _lines[handler].done;
  done = std::max(done, id);
  onFile([&] { cleanUp(handler); });
}

void DeliveryQueue::keepOnly(const std::set<std::string>& subscriptions,
                             const std::set<std::string>& handlers) {
  onFile([&] {
    std::set<std::string> gone;
    for (const auto& [name, count] : _ofSubscription) {
      if (!subscriptions.contains(name)) gone.insert(name);
    }
    for (const std::string& name : gone) erase("subscription = ?1", name);
    std::erase_if(_lines, [&](const auto& line) {
      if (handlers.contains(line.first)) return false;
      _file.prepare("DELETE FROM listener WHERE handler = ?1").with(line.first).run();
      return true;
    });
    if (!gone.empty()) _file.shrink();
  });
}

}  // namespace ZebManager
