// Indications on their way to the sink.
#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "isolation/ProviderSupervisor.h"

namespace ZebManager {

/// Calls the sink on a thread of its own, so that a slow disk delays no answer. What was added is handed over
/// even when the object goes. Safe from any thread.
class SinkThread {
 public:
  /// `taken` is called after each indication with the number of the process that it came from.
  SinkThread(ProviderSupervisor::Sink sink, std::function<void(std::uint64_t process)> taken,
             std::function<void(const std::string&)> log);
  SinkThread(const SinkThread&) = delete;
  SinkThread& operator=(const SinkThread&) = delete;
  ~SinkThread();

  void add(std::uint64_t process, std::vector<std::string> filterNames, std::string element);

 private:
  struct Item {
    std::uint64_t process;
    std::vector<std::string> filterNames;
    std::string element;
  };

  void run();
  void handOver(Item item);

  const ProviderSupervisor::Sink _sink;
  const std::function<void(std::uint64_t)> _taken;
  const std::function<void(const std::string&)> _log;
  std::mutex _mutex;
  std::condition_variable _changed;
  std::deque<Item> _waiting;
  bool _closed = false;
  std::thread _thread;
};

}  // namespace ZebManager
