#include "isolation/CallWorkers.h"

#include <pthread.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <set>

namespace ZebManager {
namespace {

std::uint64_t timeOf(clockid_t clock) {
  timespec time{};
  clock_gettime(clock, &time);
  return static_cast<std::uint64_t>(time.tv_sec) * 1'000'000 +
         static_cast<std::uint64_t>(time.tv_nsec) / 1000;
}

/// The state of a thread, which stands behind its name in parentheses.
char stateOf(const std::filesystem::path& thread) {
  std::ifstream file(thread / "stat");
  std::string line;
  std::getline(file, line);
  const std::size_t name = line.rfind(") ");
  return name == std::string::npos || name + 2 >= line.size() ? '?' : line[name + 2];
}

/// Threads that run, want to, or wait for a disk; this one left out.
std::set<pid_t> awakeThreads() {
  std::set<pid_t> awake;
  std::error_code gone;
  for (const auto& entry : std::filesystem::directory_iterator("/proc/self/task", gone)) {
    const pid_t thread = std::stoi(entry.path().filename().string());
    const char state = stateOf(entry.path());
    if (thread != gettid() && (state == 'R' || state == 'D')) awake.insert(thread);
  }
  return awake;
}

}  // namespace

CallWorkers::~CallWorkers() {
  {
    const std::lock_guard lock(_mutex);
    _closed = true;
  }
  _changed.notify_all();
  for (std::thread& thread : _threads) thread.join();
}

void CallWorkers::add(Frame message) {
  const std::lock_guard lock(_mutex);
  _waiting.push_back(std::move(message));
  if (_waiting.size() > _idle) _threads.emplace_back([this] { run(); });
  _changed.notify_one();
}

void CallWorkers::run() {
  clockid_t clock{};
  pthread_getcpuclockid(pthread_self(), &clock);
  std::unique_lock lock(_mutex);
  for (;;) {
    ++_idle;
    _changed.wait(lock, [this] { return _closed || !_waiting.empty(); });
    --_idle;
    if (_waiting.empty()) return;
    const Frame message = std::move(_waiting.front());
    _waiting.pop_front();
    const auto performing =
        _performing.insert_or_assign(message.number, Performing{gettid(), clock, timeOf(clock)}).first;
    lock.unlock();
    _sender.send(answerTo(message));
    lock.lock();
    _performing.erase(performing);
  }
}

Pulse CallWorkers::pulse(pid_t own) {
  std::set<pid_t> awake = awakeThreads();
  awake.erase(own);
  Pulse pulse;
  const std::lock_guard lock(_mutex);
  for (const auto& [number, performing] : _performing) {
    const bool moves = awake.erase(performing.thread) > 0;
    pulse.calls.push_back({number, timeOf(performing.clock) - performing.since, moves});
  }
  pulse.othersAwake = !awake.empty();
  return pulse;
}

Frame CallWorkers::answerTo(const Frame& message) {
  try {
    std::string answer = _provider.perform(message.body);
    if (answer.size() <= kLongestBody) return {Frame::Kind::Answer, message.number, std::move(answer)};
    return {Frame::Kind::Refusal, message.number,
            "an answer of " + std::to_string(answer.size()) + " bytes, at most " +
                std::to_string(kLongestBody) + " are allowed"};
  } catch (const std::exception& error) {
    return {Frame::Kind::Refusal, message.number, error.what()};
  }
}

}  // namespace ZebManager
