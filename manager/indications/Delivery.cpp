#include "indications/Delivery.h"

#include <curl/curl.h>

#include <algorithm>
#include <map>
#include <mutex>
#include <set>
#include <thread>
#include <utility>

#include "indications/DeliveryQueue.h"
#include "indications/ExportText.h"
#include "indications/WbemListener.h"

namespace ZebManager {
namespace {

using Clock = WbemListener::Clock;

constexpr std::chrono::milliseconds kLongestPoll = std::chrono::minutes(1);
/// After an error of the queue's file, which no listener can help.
constexpr std::chrono::milliseconds kPauseOfQueue = std::chrono::seconds(5);

}  // namespace

/// The mutex guards the queue and what the callers leave for the thread; listeners are the thread's alone.
class Delivery::Exporter {
 public:
  Exporter(const DeliverySettings& settings, LogLine log)
      : _settings(settings),
        _log(std::move(log)),
        _queue(_settings, _log),
        _multi(newMulti()),
        _thread([this] { run(); }) {}
  Exporter(const Exporter&) = delete;
  Exporter& operator=(const Exporter&) = delete;
  ~Exporter() {
    {
      const std::lock_guard lock(_mutex);
      _stopping = true;
    }
    curl_multi_wakeup(_multi.get());
    _thread.join();
  }

  void setSubscriptions(std::vector<Subscription> subscriptions);
  void deliver(const std::vector<std::string>& filterNames, std::string_view instanceElement);
  std::size_t waiting() const {
    const std::lock_guard lock(_mutex);
    return _queue.waiting();
  }

 private:
  struct Destination {
    explicit Destination(CURLM* multi, const DeliverySettings& settings, const std::string& url)
        : listener(multi, settings, url) {}
    WbemListener listener;
    bool empty = false;     // nothing waits for it, as far as is known
    std::int64_t last = 0;  // indication that was sent last
    unsigned refusals = 0;  // of that one
  };

  void run();
  void work();
  bool takeChanges();
  void takeSubscriptions(const std::vector<Subscription>& subscriptions);
  void startNext(const std::string& handler, Destination& destination);
  void finishDone();
  void conclude(const std::string& handler, Destination& destination, CURLcode code);
  void remove(const std::string& handler, std::int64_t id);
  void poll();

  const DeliverySettings _settings;
  const LogLine _log;
  mutable std::mutex _mutex;
  DeliveryQueue _queue;
  std::shared_ptr<const std::vector<Subscription>> _subscriptions =
      std::make_shared<const std::vector<Subscription>>();
  bool _changed = false;           // `_subscriptions`, since the thread looked
  std::set<std::string> _touched;  // handlers that something was queued for
  bool _stopping = false;

  const Multi _multi;
  std::map<std::string, Destination> _destinations;  // by handler
  Clock::time_point _resume = Clock::time_point::min();
  std::thread _thread;
};

void Delivery::Exporter::setSubscriptions(std::vector<Subscription> subscriptions) {
  const auto all = std::make_shared<const std::vector<Subscription>>(std::move(subscriptions));
  std::set<std::string_view> names;
  std::set<std::string_view> handlers;
  for (const Subscription& subscription : *all) {
    names.insert(names.end(), subscription.name);
    handlers.insert(handlers.end(), subscription.handlerName);
  }
  {
    const std::lock_guard lock(_mutex);
    _subscriptions = all;
    _changed = true;
    _queue.keepOnly(names, handlers);
  }
  curl_multi_wakeup(_multi.get());
}

void Delivery::Exporter::deliver(const std::vector<std::string>& filterNames,
                                 std::string_view instanceElement) {
  const auto now = _settings.clock();
  {
    const std::lock_guard lock(_mutex);
    std::map<std::vector<std::string>, std::vector<const Subscription*>> wanting;  // by what they select
    for (const Subscription& subscription : *_subscriptions) {
      const bool selected = std::ranges::find(filterNames, subscription.filterName) != filterNames.end();
      if (selected && !(subscription.end && *subscription.end <= now))
        wanting[subscription.properties].push_back(&subscription);
    }
    if (wanting.empty()) return;
    for (const auto& [properties, subscriptions] : wanting) {
      const auto narrowed = properties.empty() ? std::nullopt : withProperties(instanceElement, properties);
      _queue.put(subscriptions, narrowed ? *narrowed : instanceElement);
      for (const Subscription* subscription : subscriptions) _touched.insert(subscription->handlerName);
    }
  }
  curl_multi_wakeup(_multi.get());
}

void Delivery::Exporter::run() {
  while (takeChanges()) {
    try {
      work();
    } catch (const std::exception& error) {
      _log(std::string("sending indications: ") + error.what());
      _resume = Clock::now() + kPauseOfQueue;
    }
    poll();
  }
  _destinations.clear();
}

/// False when it is time to end.
bool Delivery::Exporter::takeChanges() {
  std::shared_ptr<const std::vector<Subscription>> subscriptions;
  std::set<std::string> touched;
  bool changed = false;
  {
    const std::lock_guard lock(_mutex);
    if (_stopping) return false;
    changed = std::exchange(_changed, false);
    if (changed) subscriptions = _subscriptions;
    touched.swap(_touched);
  }
  if (changed) takeSubscriptions(*subscriptions);
  for (const std::string& handler : touched) {
    if (const auto found = _destinations.find(handler); found != _destinations.end())
      found->second.empty = false;
  }
  return true;
}

void Delivery::Exporter::takeSubscriptions(const std::vector<Subscription>& subscriptions) {
  std::set<std::string_view> handlers;
  for (const Subscription& subscription : subscriptions) {
    handlers.insert(handlers.end(), subscription.handlerName);
    const auto made = _destinations.try_emplace(subscription.handlerName, _multi.get(), _settings,
                                                subscription.destination);
    made.first->second.listener.setUrl(subscription.destination);
  }
  std::erase_if(_destinations, [&](const auto& entry) { return !handlers.contains(entry.first); });
}

void Delivery::Exporter::work() {
  finishDone();
  const auto now = Clock::now();
  if (now < _resume) return;
  for (auto& [handler, destination] : _destinations) {
    const WbemListener& listener = destination.listener;
    if (!destination.empty && !listener.sending() && listener.due() <= now) startNext(handler, destination);
  }
  int running = 0;
  curl_multi_perform(_multi.get(), &running);
  finishDone();
}

void Delivery::Exporter::startNext(const std::string& handler, Destination& destination) {
  std::optional<QueuedIndication> next;
  {
    const std::lock_guard lock(_mutex);
    next = _queue.oldest(handler);
    destination.empty = !next;
  }
  if (!next) return;
  if (std::exchange(destination.last, next->id) != next->id) destination.refusals = 0;
  if (destination.listener.send(*next)) return;
  _log("an indication that waits for " + destination.listener.url() + " cannot be read: it is dropped");
  remove(handler, next->id);
}

void Delivery::Exporter::finishDone() {
  int left = 0;
  while (const CURLMsg* const message = curl_multi_info_read(_multi.get(), &left)) {
    const CURLcode code = message->data.result;  // the message goes with its handle
    if (message->msg != CURLMSG_DONE) continue;
    for (auto& [handler, destination] : _destinations) {
      if (destination.listener.handle() != message->easy_handle) continue;
      conclude(handler, destination, code);
      break;
    }
  }
}

void Delivery::Exporter::conclude(const std::string& handler, Destination& destination, CURLcode code) {
  using Kind = WbemListener::Outcome::Kind;
  WbemListener& listener = destination.listener;
  const std::int64_t id = listener.sent();
  const WbemListener::Outcome outcome = listener.conclude(code);
  if (outcome.kind == Kind::Acknowledged) {
    const unsigned failures = listener.recover();
    if (failures > 0) _log("listener " + listener.url() + " answers again");
    return remove(handler, id);
  }
  if (outcome.kind == Kind::Refused && ++destination.refusals >= _settings.mostRefusals) {
    _log("listener " + listener.url() + " has refused an indication too often (" + outcome.reason +
         "): it is dropped");
    listener.recover();
    return remove(handler, id);
  }
  if (listener.postpone()) {
    _log("listener " + listener.url() + ": " + outcome.reason + "; what is meant for it waits");
  }
}

void Delivery::Exporter::remove(const std::string& handler, std::int64_t id) {
  const std::lock_guard lock(_mutex);
  _queue.remove(handler, id);
}

/// Waits for the network, for a caller, or until something is due.
void Delivery::Exporter::poll() {
  const auto now = Clock::now();
  auto until = now + kLongestPoll;
  for (const auto& [handler, destination] : _destinations) {
    if (destination.empty || destination.listener.sending()) continue;
    until = std::clamp(std::max(destination.listener.due(), _resume), now, until);
  }
  const auto wait = std::chrono::ceil<std::chrono::milliseconds>(until - now);
  curl_multi_poll(_multi.get(), nullptr, 0, static_cast<int>(wait.count()), nullptr);
}

Delivery::Delivery(const DeliverySettings& settings, LogLine log)
    : _exporter(std::make_unique<Exporter>(settings, std::move(log))) {}

Delivery::~Delivery() = default;

void Delivery::setSubscriptions(std::vector<Subscription> subscriptions) {
  _exporter->setSubscriptions(std::move(subscriptions));
}

void Delivery::deliver(const std::vector<std::string>& filterNames, std::string_view instanceElement) {
  _exporter->deliver(filterNames, instanceElement);
}

std::size_t Delivery::waiting() const {
  return _exporter->waiting();
}

}  // namespace ZebManager
