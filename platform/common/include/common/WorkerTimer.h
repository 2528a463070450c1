#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace ZEB {

/// A thread that does some work at an interval, and early when it is woken. A burst of wake-ups is one run:
/// it comes when no more have followed for a short while, and never much later than the first.
class WorkerTimer {
 public:
  using Clock = std::chrono::steady_clock;

  struct Timing {
    Clock::duration firstAfter;                                 ///< before the first run
    Clock::duration interval;                                   ///< between the end of a run and the next
    Clock::duration quiet = std::chrono::milliseconds(50);      ///< after the last wake-up
    Clock::duration patience = std::chrono::milliseconds(200);  ///< after the first wake-up, at the latest
  };

  /// Waits until the next run is due; false when the thread has to end.
  using NextRun = std::function<bool()>;
  /// What the thread does: one run whenever `next` answers true, until it answers false.
  using Body = std::function<void(const NextRun& next)>;

  WorkerTimer(Timing timing, Body body);
  /// Waits for the run that is under way.
  ~WorkerTimer();
  WorkerTimer(const WorkerTimer&) = delete;
  WorkerTimer& operator=(const WorkerTimer&) = delete;

  /// From any thread; returns at once. During a run it asks for another one.
  void wake();
  /// Likewise; asks for a run that begins at that time, or later when another is under way.
  void wakeAt(Clock::time_point when);

 private:
  Clock::time_point due() const;
  bool waitForRun();

  const Timing _timing;
  std::mutex _mutex;
  std::condition_variable _changed;
  Clock::time_point _regular;  ///< when the next run is due unless it is asked for earlier
  Clock::time_point _asked;    ///< when it is due, while `_woken`
  Clock::time_point _latest;   ///< when `_asked` must not be put off any more
  Clock::time_point _alarm = Clock::time_point::max();  ///< the earliest that `wakeAt` asks for
  bool _first = true;
  bool _woken = false;
  bool _stop = false;
  std::thread _thread;
};

}  // namespace ZEB
