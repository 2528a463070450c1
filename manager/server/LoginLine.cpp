#include "server/LoginLine.h"

#include <poll.h>
#include <sys/eventfd.h>

#include <algorithm>
#include <array>

#include "isolation/ProviderProcess.h"
#include "values/ManagerError.h"

namespace ZebManager {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t kSeats = 2;
constexpr std::ptrdiff_t kMostWaiting = 16;  ///< of those who were let in before, and as many others
constexpr std::ptrdiff_t kMostOfClient = 4;  ///< of others
constexpr std::chrono::seconds kLongestWait{10};
/// Longer than the process that judges gives itself.
constexpr int kLongestJudging = 90'000;

}  // namespace

/// A process that judges, once somebody has sat down.
class LoginLine::Seat {
 public:
  /// Throws ManagerError. One that failed is used no more.
  Verdict judge(const ProcessSource& source, const LoginAttempt& attempt, int stop) {
    try {
      return tryOnce(source, attempt, stop);
    } catch (const ManagerError&) {
      _process.reset();  // it may have ended long ago
      pollfd stopped{stop, POLLIN, 0};
      if (poll(&stopped, 1, 0) != 0) throw;
      return tryOnce(source, attempt, stop);
    }
  }

 private:
  Verdict tryOnce(const ProcessSource& source, const LoginAttempt& attempt, int stop) {
    if (!_process) {
      _process = std::make_unique<ConnectedProcess>(source, kProviderSocket);
      _reader.emplace();
    }
    FrameWriter writer;
    writer.add(frameOf(attempt));
    if (writer.send(_process->socket()) != Transfer::Done) throw ManagerError("nobody judges logins");
    for (;;) {
      if (const auto frame = _reader->next()) return verdictOf(*frame);
      std::array<pollfd, 2> ready = {{{_process->socket(), POLLIN, 0}, {stop, POLLIN, 0}}};
      if (poll(ready.data(), ready.size(), kLongestJudging) < 1 || ready[1].revents != 0 ||
          _reader->receive(_process->socket()) == Transfer::Ended) {
        throw ManagerError("nobody judges logins");
      }
    }
  }

  std::unique_ptr<ConnectedProcess> _process;
  std::optional<FrameReader> _reader;
};

LoginLine::LoginLine(ProcessSource source)
    : _source(std::move(source)), _stop(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
  if (!_stop) throw ManagerError("there is no descriptor left for logins");
  while (_free.size() < kSeats) _free.push_back(std::make_unique<Seat>());
}

LoginLine::~LoginLine() = default;

void LoginLine::stop() {
  const std::lock_guard lock(_mutex);
  _closed = true;
  eventfd_write(_stop.get(), 1);
  _changed.notify_all();
}

bool LoginLine::mayWait(const Waiting& waiting) const {
  const auto like = [&](const Waiting& other) { return other.knownBefore == waiting.knownBefore; };
  const auto ofClient = [&](const Waiting& other) { return like(other) && other.client == waiting.client; };
  return std::count_if(_line.begin(), _line.end(), like) < kMostWaiting &&
         (waiting.knownBefore || std::count_if(_line.begin(), _line.end(), ofClient) < kMostOfClient);
}

bool LoginLine::isNext(const Waiting& waiting) const {
  const auto known =
      std::find_if(_line.begin(), _line.end(), [](const auto& one) { return one.knownBefore; });
  return !_free.empty() && &waiting == (known == _line.end() ? &_line.front() : &*known);
}

std::unique_ptr<LoginLine::Seat> LoginLine::takeSeat(const std::string& client, bool knownBefore) {
  std::unique_lock lock(_mutex);
  if (!mayWait({client, knownBefore})) return nullptr;
  const auto place = _line.insert(_line.end(), {client, knownBefore});
  const bool come =
      _changed.wait_for(lock, kLongestWait, [&] { return _closed || isNext(*place); }) && !_closed;
  _line.erase(place);
  std::unique_ptr<Seat> seat;
  if (come) {
    seat = std::move(_free.back());
    _free.pop_back();
  }
  _changed.notify_all();
  return seat;
}

void LoginLine::giveBack(std::unique_ptr<Seat> seat) {
  const std::lock_guard lock(_mutex);
  _free.push_back(std::move(seat));
  _changed.notify_all();
}

std::optional<Verdict> LoginLine::judge(const LoginAttempt& attempt, const std::string& client,
                                        bool knownBefore) {
  std::unique_ptr<Seat> seat = takeSeat(client, knownBefore);
  if (!seat) return std::nullopt;
  try {
    const Verdict verdict = seat->judge(_source, attempt, _stop.get());
    giveBack(std::move(seat));
    return verdict;
  } catch (...) {
    giveBack(std::make_unique<Seat>());
    throw;
  }
}

}  // namespace ZebManager
