// Indications between the thread that delivers them and the one that reads them.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>

#include "values/Objects.h"

namespace ZebManager {

/// An indication with the memory that it lives in.
struct DeliveredIndication {
  Arena arena;
  const Instance* instance = nullptr;
  std::chrono::system_clock::time_point arrival;
  std::string reported;  ///< see `IndicationQueue::setReported`
};

/// Delivery only puts a copy here, so it never comes back into the provider. Safe from any thread.
class IndicationQueue {
 public:
  /// `reported` is asked for what goes along with each indication that is accepted, on the thread that
  /// delivers, one call at a time. Before anything is delivered.
  void setReported(std::function<std::string()> reported) { _reported = std::move(reported); }

  /// Until somebody listens, deliveries are accepted and dropped.
  void open();
  void close();

  /// From now on nothing is taken; what waits stays.
  void shut();
  /// Whether nothing waits in a queue that is shut.
  bool isOver() const;

  /// False when the queue is full or shut: nothing was taken.
  bool deliver(const Instance& indication);

  /// The oldest indication; null when none comes within the time or `wake` was called.
  std::unique_ptr<DeliveredIndication> next(std::chrono::milliseconds patience);
  void wake();

 private:
  mutable std::mutex _mutex;
  std::condition_variable _changed;
  std::deque<std::unique_ptr<DeliveredIndication>> _waiting;
  std::function<std::string()> _reported;
  bool _open = false;
  bool _shut = false;
  bool _woken = false;
};

}  // namespace ZebManager
