// The connections of a server, and the time that each has.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <thread>

namespace ZebManager {

/// Shuts down sockets whose time is up, and those that wait for a request where there are too many: the one
/// that has waited longest gives way to the next that comes. Closing them stays with their owner. Safe from
/// any thread.
class Connections {
 public:
  using Seconds = std::chrono::seconds;

  /// `most`: of all; `mostOfClient`: that wait for a request.
  Connections(std::size_t most, std::size_t mostOfClient);
  Connections(const Connections&) = delete;
  Connections& operator=(const Connections&) = delete;
  ~Connections();

  /// One that has come: from now on it waits for a request.
  void add(int socket, const std::string& client, Seconds time);
  /// It waits again.
  void wait(int socket, Seconds time);
  /// A request of it is under way, which has as long as its time says, and gives way to nobody.
  void work(int socket);
  /// From now on it has so long; zero: as long as it takes.
  void allow(int socket, Seconds time);
  /// To be called before the socket is closed.
  void remove(int socket);

 private:
  using Clock = std::chrono::steady_clock;
  struct Row {
    std::string client;
    Clock::time_point end;
    std::uint64_t turn = 0;  ///< of those that wait: the least has waited longest
    bool waits = true;
  };
  using Rows = std::map<int, Row>;

  void makeRoom(const std::string& client);
  void dismissOldest(const std::string& client);
  void dismiss(Rows::iterator row);
  void setWaits(Row& row, bool waits);
  void run();

  const std::size_t _most, _mostOfClient;
  std::mutex _mutex;
  std::condition_variable _changed;
  Rows _rows;                                   // by socket; those that were not shut down
  std::map<std::string, std::size_t> _waiting;  // of each client
  std::uint64_t _turn = 0;
  bool _closed = false;
  std::thread _thread;
};

}  // namespace ZebManager
