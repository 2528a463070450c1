// The threads on which the provider's process performs messages.
#pragma once

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <vector>

#include "isolation/Frame.h"
#include "isolation/ProviderProcess.h"

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

 private:
  void run();
  Frame answerTo(const Frame& message);

  HostedProvider& _provider;
  FrameSender& _sender;
  std::mutex _mutex;
  std::condition_variable _changed;
  std::deque<Frame> _waiting;
  std::size_t _idle = 0;
  bool _closed = false;
  std::vector<std::thread> _threads;
};

}  // namespace ZebManager
