// One provider process, as the supervisor sees it.
#pragma once

#include <poll.h>

#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "isolation/Call.h"
#include "isolation/ConnectedProcess.h"
#include "isolation/Frame.h"
#include "isolation/ProgressWatch.h"

namespace ZebManager {

/// The process, its socket and the calls that it was sent. For the supervisor's thread only.
class ProviderLink {
 public:
  /// Serving: it gets calls, and its indications count. Retired: another serves; it keeps the calls that it
  /// has. Leaving: nothing is asked of it any more.
  enum class Stage { Starting, Serving, Retired, Leaving };

  struct Sent {
    std::shared_ptr<Call> call;
    Clock::time_point when;
  };

  /// Throws ManagerError when the process cannot be started.
  ProviderLink(const SupervisorOptions& options, std::uint64_t processNumber, const std::string& filters,
               const std::string& reported);

  void send(const std::shared_ptr<Call>& call);
  void send(Frame::Kind kind, std::string body);
  /// Lets it go: in good order, or at once when calls hang in it.
  void leave();
  void kill() { _child.kill(); }

  /// Events to wait for at `socket()`; the descriptor is negative once nothing comes any more.
  short awaited() const { return static_cast<short>(_writer.empty() ? POLLIN : POLLIN | POLLOUT); }
  int socket() const { return _closed ? -1 : _child.socket(); }
  int ending() const { return _child.ending(); }
  /// Whether it is gone, given what there is to read at `ending()`.
  bool hasEnded(short events) const { return ending() < 0 ? _closed : events != 0; }

  void flush();
  /// Reads what is there, up to a bound unless `all`. A process that says what it cannot say is killed.
  void receive(bool all);
  std::optional<Frame> next() { return _reader.next(); }
  /// For a process that has ended: how it did.
  std::string reap();

  bool hasLiveCalls() const;
  bool hasSuspect() const;
  /// A call that nobody waits for any more is still under way; whether it sleeps does not matter.
  bool hasForgotten() const;
  /// Such a call sleeps.
  bool hasForgottenAsleep(Clock::time_point now) const;
  /// The live call that was sent first; null without one.
  const Sent* oldest() const;
  /// A live call other than the oldest has been under way for so long.
  bool otherWaits(Clock::time_point now, SupervisorOptions::Milliseconds grace) const;

  const std::uint64_t number;
  Stage stage = Stage::Starting;
  Clock::time_point since = Clock::now();      ///< in this stage
  std::optional<Clock::time_point> condemned;  ///< serving, but to be replaced; since when
  bool drained = false;  ///< it takes no indication from the plug-in any more, and all that it took were sent
  bool useful = false;   ///< it answered something
  bool gone = false;     ///< ended and reaped
  std::deque<std::vector<std::string>>
      held;                             ///< indications that have to wait for those of the process before
  std::string fault;                    ///< why it cannot start
  std::map<std::uint64_t, Sent> calls;  ///< by number, which is the order of arrival
  ProgressWatch progress;

 private:
  void close(const std::string& reason);

  ConnectedProcess _child;
  FrameReader _reader;
  FrameWriter _writer;
  bool _closed = false;
};

}  // namespace ZebManager
