// The threads on which the provider's process performs messages.
#pragma once

#include <sys/types.h>

#include <condition_variable>
#include <ctime>
#include <deque>
#include <map>
#include <mutex>
#include <thread>
#include <vector>

#include "isolation/Frame.h"
#include "isolation/ProviderProcess.h"
#include "isolation/Pulse.h"

namespace ZebManager {

/// As many threads as there were messages at once, which the other end bounds: a call that does not return
/// keeps nobody waiting here.
class CallWorkers {
 public:
  CallWorkers(HostedProvider& provider, FrameSender& sender) : _provider(provider), _sender(sender) {}
  CallWorkers(const CallWorkers&) = delete;
  CallWorkers& operator=(const CallWorkers&) = delete;
  /// Waits for the calls that are under way.
  ~CallWorkers();

  void add(Frame message);
  /// How the calls that are under way get on. `own`: a thread that is none of the plug-in's.
  Pulse pulse(pid_t own);

 private:
  /// A call on its thread.
  struct Performing {
    pid_t thread;
    clockid_t clock;
    std::uint64_t since;  ///< of that clock, in microseconds
  };

  void run();
  Frame answerTo(const Frame& message);

  HostedProvider& _provider;
  FrameSender& _sender;
  std::mutex _mutex;
  std::condition_variable _changed;
  std::deque<Frame> _waiting;
  std::map<std::uint64_t, Performing> _performing;  // by number of the call
  std::size_t _idle = 0;
  bool _closed = false;
  std::vector<std::thread> _threads;
};

}  // namespace ZebManager
