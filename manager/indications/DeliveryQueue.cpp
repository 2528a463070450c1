#include "indications/DeliveryQueue.h"

#include <array>
#include <random>

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

std::int64_t secondsNow() {
  return std::chrono::duration_cast<std::chrono::seconds>(std::chrono::system_clock::now().time_since_epoch())
      .count();
}

/// A name that no other sequence of any server has.
std::string newContext() {
  constexpr char kDigits[] = "0123456789abcdef";
  std::random_device random;
  std::string context = "zebcim:";
  for (int i = 0; i < 32; ++i) context += kDigits[random() % 16];
  return context;
}

std::vector<std::string> firstColumn(SqliteStatement statement) {
  std::vector<std::string> values;
  while (statement.step()) values.push_back(statement.text(0));
  return values;
}

}  // namespace

// A burst of alerts has to get into the file without waiting for the disk once for each: SQLite writes them
// at once, which is enough for the end of the process, and waits for the disk at its checkpoints.
DeliveryQueue::DeliveryQueue(const DeliverySettings& settings, LogLine log)
    : _mostWaiting(settings.mostWaiting),
      _longestWait(settings.longestWait),
      _log(std::move(log)),
      _file(settings.directory, "delivery.db", kUpgrades, _log) {
  _file.execute("PRAGMA synchronous = NORMAL");
  count();
}

void DeliveryQueue::count() {
  _waiting.clear();
  SqliteStatement counts = _file.prepare("SELECT handler, count(*) FROM indication GROUP BY handler");
  while (counts.step()) _waiting[counts.text(0)] = static_cast<std::size_t>(counts.number(1));
}

std::size_t DeliveryQueue::waiting() const {
  std::size_t sum = 0;
  for (const auto& [handler, number] : _waiting) sum += number;
  return sum;
}

void DeliveryQueue::put(const std::vector<const Subscription*>& subscriptions, std::string_view element) {
  const std::int64_t now = secondsNow();
  SqliteTransaction transaction(_file);
  for (const Subscription* subscription : subscriptions) append(*subscription, element, now);
  transaction.commit();
  for (const Subscription* subscription : subscriptions) ++_waiting[subscription->handlerName];
  for (const Subscription* subscription : subscriptions) dropSurplus(subscription->handlerName);
}

void DeliveryQueue::append(const Subscription& subscription, std::string_view element, std::int64_t now) {
  _file.prepare("INSERT INTO listener VALUES (?1, ?2, 0) ON CONFLICT DO NOTHING")
      .with(subscription.handlerName, newContext())
      .run();
  _file
      .prepare(
          "INSERT INTO indication (handler, subscription, number, queued, element)"
          " SELECT ?1, ?2, next, ?3, ?4 FROM listener WHERE handler = ?1")
      .with(subscription.handlerName, subscription.name, now, element)
      .run();
  _file.prepare("UPDATE listener SET next = next + 1 WHERE handler = ?1")
      .with(subscription.handlerName)
      .run();
}

void DeliveryQueue::dropSurplus(const std::string& handler) {
  std::size_t& waiting = _waiting[handler];
  if (waiting <= _mostWaiting) return;
  _file
      .prepare(
          "DELETE FROM indication WHERE id IN"
          " (SELECT id FROM indication WHERE handler = ?1 ORDER BY id LIMIT ?2)")
      .with(handler, static_cast<std::int64_t>(waiting - _mostWaiting))
      .run();
  waiting -= static_cast<std::size_t>(_file.changes());
  std::size_t& dropped = _dropped[handler];
  if (dropped++ % kDropsBetweenLines != 0) return;
  _log("the queue for " + handler + " is full with " + std::to_string(_mostWaiting) +
       " indications: the oldest is dropped, " + std::to_string(dropped) + " so far");
}

std::optional<QueuedIndication> DeliveryQueue::oldest(const std::string& handler) {
  _file.prepare("DELETE FROM indication WHERE handler = ?1 AND queued < ?2")
      .with(handler, secondsNow() - std::int64_t{_longestWait.count()})
      .run();
  if (const int expired = _file.changes(); expired > 0) {
    _waiting[handler] -= static_cast<std::size_t>(expired);
    _log(std::to_string(expired) + " indications for " + handler + " have waited for more than " +
         std::to_string(_longestWait.count()) + " s: they are dropped");
  }
  SqliteStatement select = _file.prepare(
      "SELECT id, context, number, element FROM indication JOIN listener USING (handler)"
      " WHERE handler = ?1 ORDER BY id LIMIT 1");
  select.with(handler);
  if (!select.step()) return std::nullopt;
  return QueuedIndication{select.number(0), select.text(1), select.number(2), select.text(3)};
}

void DeliveryQueue::remove(const std::string& handler, std::int64_t id) {
  _file.prepare("DELETE FROM indication WHERE id = ?1").with(id).run();
  _waiting[handler] -= static_cast<std::size_t>(_file.changes());
  if (_waiting[handler] < _mostWaiting) _dropped.erase(handler);
}

void DeliveryQueue::keepOnly(const std::set<std::string>& subscriptions,
                             const std::set<std::string>& handlers) {
  SqliteTransaction transaction(_file);
  for (const std::string& name : firstColumn(_file.prepare("SELECT DISTINCT subscription FROM indication"))) {
    if (!subscriptions.contains(name))
      _file.prepare("DELETE FROM indication WHERE subscription = ?1").with(name).run();
  }
  for (const std::string& name : firstColumn(_file.prepare("SELECT handler FROM listener"))) {
    if (!handlers.contains(name)) _file.prepare("DELETE FROM listener WHERE handler = ?1").with(name).run();
  }
  transaction.commit();
  count();
}

}  // namespace ZebManager
