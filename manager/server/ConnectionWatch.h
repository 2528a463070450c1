// Time limits that a connection cannot stretch by sending a byte now and then.
#pragma once

#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>
#include <thread>

namespace ZebManager {

/// Shuts down sockets whose time is up; closing them stays with their owner. Safe from any thread.
class ConnectionWatch {
 public:
  using Seconds = std::chrono::seconds;

  ConnectionWatch() : _thread([this] { run(); }) {}
  ConnectionWatch(const ConnectionWatch&) = delete;
  ConnectionWatch& operator=(const ConnectionWatch&) = delete;
  ~ConnectionWatch();

  /// From now on the socket has so long.
  void allow(int socket, Seconds time);
  /// To be called before the socket is closed.
  void forget(int socket);

 private:
  using Clock = std::chrono::steady_clock;

  void run();

  std::mutex _mutex;
  std::condition_variable _changed;
  std::map<int, Clock::time_point> _ends;
  bool _closed = false;
  std::thread _thread;
};

}  // namespace ZebManager
