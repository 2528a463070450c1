#include "server/ConnectionWatch.h"

#include <sys/socket.h>

namespace ZebManager {

ConnectionWatch::~ConnectionWatch() {
  {
    const std::lock_guard lock(_mutex);
    _closed = true;
  }
  _changed.notify_one();
  _thread.join();
}

void ConnectionWatch::allow(int socket, Seconds time) {
  const std::lock_guard lock(_mutex);
  _ends[socket] = Clock::now() + time;
}

void ConnectionWatch::forget(int socket) {
  const std::lock_guard lock(_mutex);
  _ends.erase(socket);
}

void ConnectionWatch::run() {
  constexpr std::chrono::seconds kRound{1};
  std::unique_lock lock(_mutex);
  while (!_changed.wait_for(lock, kRound, [this] { return _closed; })) {
    const auto now = Clock::now();
    std::erase_if(_ends, [&](const auto& entry) {
      if (entry.second > now) return false;
      shutdown(entry.first, SHUT_RDWR);
      return true;
    });
  }
}

}  // namespace ZebManager
