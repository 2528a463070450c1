#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

#include "monitor/LinkWatch.h"

namespace ZEB {

/// Plays the part of the kernel's link messages where a recording is served: looks again and again whether it
/// has come to another moment or its file has changed, on a thread of its own, and then refreshes the data
/// sources and wakes the worker.
class RecordingWatch {
 public:
  explicit RecordingWatch(std::shared_ptr<LinkWatch> linkWatch);
  RecordingWatch(const RecordingWatch&) = delete;
  RecordingWatch& operator=(const RecordingWatch&) = delete;
  ~RecordingWatch();

 private:
  void run();

  const std::shared_ptr<LinkWatch> _linkWatch;
  std::mutex _mutex;
  std::condition_variable _changed;
  bool _stop = false;
  std::thread _thread;
};

}  // namespace ZEB
