// The thread that keeps provider processes at work.
#pragma once

#include <deque>
#include <map>
#include <mutex>
#include <optional>
#include <thread>

#include "isolation/BackOff.h"
#include "isolation/Handover.h"
#include "isolation/ProviderLink.h"
#include "isolation/SinkThread.h"

namespace ZebManager {

/// What calls are told that are under way when the server ends.
inline constexpr char kEnds[] = "the server ends";

/// Everything below the first group of members belongs to the loop's thread, which also starts the processes:
/// they die with the thread that started them.
class ProviderSupervisor::Loop {
 public:
  Loop(SupervisorOptions options, Sink sink);
  Loop(const Loop&) = delete;
  Loop& operator=(const Loop&) = delete;
  ~Loop();

  void add(std::shared_ptr<Call> call);
  void stop();
  void setFilters(const std::vector<IndicationFilter>& filters);

 private:
  using Milliseconds = SupervisorOptions::Milliseconds;
  using Outcome = Answer::Outcome;

  void wake();
  void run();

  /// What other threads left here. False when the loop is to end and every process is gone.
  bool takeArrivals();
  void takeFilters(std::string filters);

  // Time (SupervisorTime.cpp).
  void watchTime();
  void expireCalls();
  void condemnWhenBlocked();
  void askHowItIs();
  bool isReplacementWanted() const;
  void condemn(ProviderLink& link, const std::string& why);
  void startWhenNeeded();
  void refuseWhenDown();
  void endRetired();
  Milliseconds patienceOfLoop() const;

  void dispatch();
  void waitForEvents();
  void handleFrames(ProviderLink& link);
  void handle(ProviderLink& link, Frame frame);
  void noteReported(const ProviderLink& link, std::string_view lines);
  void takeIndication(ProviderLink& link, Frame frame);
  void passOn(const ProviderLink& link, std::vector<std::string> texts);
  bool mayPassOn(const ProviderLink& link) const;
  void passOnWhatIsHeld();
  void promote(ProviderLink& link);
  void retire(ProviderLink& link);
  BackOff::Life lifeOf(const ProviderLink& link) const;
  void finish(ProviderLink& link);
  void repeatOrEnd(ProviderLink& link, const std::string& reason);
  bool isUnderWay(const Call& call, const ProviderLink& except) const;
  void answerCall(ProviderLink& link, std::uint64_t number, Outcome outcome, std::string body);
  void log(const std::string& line) const;

  const SupervisorOptions _options;
  const ZEB::FileDescriptor _wakeUp;
  std::mutex _mutex;  // guards the four below
  std::vector<std::shared_ptr<Call>> _arrived;
  std::optional<std::string> _arrivedFilters;
  std::vector<std::uint64_t> _takenFrom;
  bool _stopping = false;

  std::deque<std::shared_ptr<Call>> _waiting;
  std::vector<std::unique_ptr<ProviderLink>> _links;  // in order of their start
  ProviderLink* _serving = nullptr;
  ProviderLink* _starting = nullptr;
  std::string _filters;
  Handover _reported;  // to somebody who listens
  BackOff _backOff;
  std::string _lastFault;
  Clock::time_point _now = Clock::now();
  std::uint64_t _callNumber = 0;
  std::uint64_t _processNumber = 0;
  bool _ending = false;

  SinkThread _sink;
  std::thread _thread;
};

}  // namespace ZebManager
