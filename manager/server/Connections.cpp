#include "server/Connections.h"

#include <sys/socket.h>

#include <algorithm>

namespace ZebManager {

Connections::Connections(std::size_t most, std::size_t mostOfClient)
    : _most(most), _mostOfClient(mostOfClient), _thread([this] { run(); }) {}

Connections::~Connections() {
  {
    const std::lock_guard lock(_mutex);
    _closed = true;
  }
  _changed.notify_one();
  _thread.join();
}

void Connections::add(int socket, const std::string& client, Seconds time) {
  const std::lock_guard lock(_mutex);
  _rows[socket] = {client, Clock::now() + time, ++_turn, true};
  ++_waiting[client];
  makeRoom(client);
}

/// Of the client that has most of what waits, where all are too many.
void Connections::makeRoom(const std::string& client) {
  if (_waiting[client] > _mostOfClient) dismissOldest(client);
  if (_rows.size() <= _most) return;
  const auto most = std::max_element(_waiting.begin(), _waiting.end(),
                                     [](const auto& a, const auto& b) { return a.second < b.second; });
  dismissOldest(std::string(most->first));
}

void Connections::dismissOldest(const std::string& client) {
  auto oldest = _rows.end();
  for (auto row = _rows.begin(); row != _rows.end(); ++row) {
    if (!row->second.waits || row->second.client != client) continue;
    if (oldest == _rows.end() || row->second.turn < oldest->second.turn) oldest = row;
  }
  if (oldest != _rows.end()) dismiss(oldest);
}

void Connections::dismiss(Rows::iterator row) {
  shutdown(row->first, SHUT_RDWR);
  setWaits(row->second, false);
  _rows.erase(row);
}

void Connections::setWaits(Row& row, bool waits) {
  if (row.waits == waits) return;
  row.waits = waits;
  if (waits) {
    row.turn = ++_turn;
    ++_waiting[row.client];
  } else if (--_waiting[row.client] == 0) {
    _waiting.erase(row.client);
  }
}

void Connections::wait(int socket, Seconds time) {
  const std::lock_guard lock(_mutex);
  const auto found = _rows.find(socket);
  if (found == _rows.end()) return;
  setWaits(found->second, true);
  found->second.end = Clock::now() + time;
}

void Connections::work(int socket) {
  const std::lock_guard lock(_mutex);
  if (const auto found = _rows.find(socket); found != _rows.end()) setWaits(found->second, false);
}

void Connections::allow(int socket, Seconds time) {
  const std::lock_guard lock(_mutex);
  const auto found = _rows.find(socket);
  if (found == _rows.end()) return;
  found->second.end = time == Seconds(0) ? Clock::time_point::max() : Clock::now() + time;
}

void Connections::remove(int socket) {
  const std::lock_guard lock(_mutex);
  const auto found = _rows.find(socket);
  if (found == _rows.end()) return;
  setWaits(found->second, false);
  _rows.erase(found);
}

void Connections::run() {
  constexpr std::chrono::seconds kRound{1};
  std::unique_lock lock(_mutex);
  while (!_changed.wait_for(lock, kRound, [this] { return _closed; })) {
    const auto now = Clock::now();
    for (auto row = _rows.begin(); row != _rows.end();) {
      const auto next = std::next(row);
      if (row->second.end <= now) dismiss(row);
      row = next;
    }
  }
}

}  // namespace ZebManager
