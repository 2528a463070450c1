// A supervisor of test processes.
#pragma once

#include <gmock/gmock.h>

#include <chrono>
#include <future>
#include <mutex>
#include <string>
#include <vector>

#include "isolation/ProviderSupervisor.h"
#include "posix/TemporaryFolder.h"
#include "support/Length.h"

namespace ZebManager {

using namespace std::chrono_literals;
using How = ProviderSupervisor::Answer::Outcome;
using Clock = std::chrono::steady_clock;

/// Processes start and answer so many times slower under a sanitizer; time limits give them that much more.
constexpr int kPace = ZEB::test::kSanitized ? 3 : 1;

inline void PrintTo(How outcome, std::ostream* out) {
  *out << (outcome == How::Done ? "Done" : outcome == How::TimedOut ? "TimedOut" : "Ended");
}

/// The time that something takes.
template <class Action>
Clock::duration timeOf(const Action& action) {
  const auto begin = Clock::now();
  action();
  return Clock::now() - begin;
}

/// Until the condition holds, for at most ten seconds at the usual pace.
template <class Condition>
bool eventually(const Condition& condition) {
  for (int round = 0; round < 1000 * kPace; ++round) {
    if (condition()) return true;
    std::this_thread::sleep_for(10ms);
  }
  return false;
}

class Supervised : public testing::Test {
 protected:
  using Answer = ProviderSupervisor::Answer;

  Supervised();
  ~Supervised() override;

  void start();
  /// One message that may be repeated.
  Answer read(const std::string& message) { return supervisor->perform(message, true); }
  Answer write(const std::string& message) { return supervisor->perform(message, false); }
  std::future<Answer> begin(const std::string& message, bool repeatable);
  /// The process that answers now. Throws when none does.
  pid_t provider();

  std::string file(const std::string& name) const { return (folder / name).string(); }
  /// What the sink got so far: the names, then the element, with blanks between.
  std::vector<std::string> indications();
  bool logged(const std::string& part);

  const ZEB::TemporaryFolder folder;
  SupervisorOptions options;
  std::unique_ptr<ProviderSupervisor> supervisor;

 private:
  std::mutex _mutex;
  std::vector<std::string> _indications;
  std::vector<std::string> _log;
};

std::size_t linesOf(const std::string& file);
/// Neither running nor waiting to be reaped by this process.
bool isGone(pid_t process);

}  // namespace ZebManager
