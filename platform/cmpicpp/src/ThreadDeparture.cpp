#include "ThreadDeparture.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <string>
#include <string_view>
#include <thread>

namespace CmpiCpp {
namespace {

/// Whether the thread is on a processor, or waits for one.
bool runs(pid_t thread) {
  const int file =
      open(("/proc/self/task/" + std::to_string(thread) + "/stat").c_str(), O_RDONLY | O_CLOEXEC);
  if (file < 0) return false;
  std::array<char, 128> text{};
  const ssize_t size = read(file, text.data(), text.size());
  close(file);
  // The state follows the name, which may hold anything and stands in brackets.
  const std::string_view line(text.data(), size > 0 ? static_cast<std::size_t>(size) : 0);
  const std::size_t end = line.rfind(')');
  if (end == std::string_view::npos || end + 2 >= line.size()) return false;
  constexpr std::string_view kRunningOrReading = "RD";
  return kRunningOrReading.find(line[end + 2]) != std::string_view::npos;
}

}  // namespace

void awaitDeparture(std::set<pid_t> threads) {
  using Clock = std::chrono::steady_clock;
  const auto deadline = Clock::now() + std::chrono::seconds(1);
  for (;;) {
    std::erase_if(threads, [](pid_t thread) { return !runs(thread); });
    if (threads.empty() || Clock::now() >= deadline) return;
    std::this_thread::sleep_for(std::chrono::microseconds(100));
  }
}

}  // namespace CmpiCpp
