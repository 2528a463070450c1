// Filters as the plug-in knows them.
#pragma once

#include <condition_variable>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "broker/Broker.h"
#include "broker/SelectQuery.h"
#include "isolation/IndicationFilter.h"

namespace ZebManager {

/// Activates filters in the plug-in and takes them back, on a thread of its own: the plug-in may keep it
/// waiting.
class Subscriptions {
 public:
  explicit Subscriptions(Broker& broker) : _broker(broker), _thread([this] { run(); }) {}
  Subscriptions(const Subscriptions&) = delete;
  Subscriptions& operator=(const Subscriptions&) = delete;
  /// Waits for a change that is under way; active filters stay so.
  ~Subscriptions();

  /// What is to be active from now on; of several changes in a row only the last counts.
  void set(const std::vector<IndicationFilter>& filters);

 private:
  struct Active {
    Arena arena;
    const SelectExp* filter = nullptr;
    std::string className;
  };

  void run();
  void apply(const std::vector<std::string>& queries);
  void activate(const std::string& query);
  void deactivate(const Active& active);

  Broker& _broker;
  std::map<std::string, std::unique_ptr<Active>> _active;  // by query; of the thread alone
  std::mutex _mutex;
  std::condition_variable _changed;
  std::optional<std::vector<std::string>> _wanted;
  bool _closed = false;
  std::thread _thread;
};

}  // namespace ZebManager
