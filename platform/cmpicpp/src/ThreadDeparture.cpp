#include "ThreadDeparture.h"

#include <chrono>
#include <fstream>
#include <string>
#include <string_view>
#include <thread>

namespace CmpiCpp {
namespace {

/// Whether the thread is on a processor, or waits for one.
bool runs(pid_t thread) {
  std::ifstream file("/proc/self/task/" + std::to_string(thread) + "/stat");
  std::string text;
  std::getline(file, text, '\0');
  // The state follows the name, which may hold anything and stands in brackets.
  const std::size_t end = text.rfind(')');
  if (end == std::string::npos || end + 2 >= text.size()) return false;
  constexpr std::string_view kRunningOrReading = "RD";
  return kRunningOrReading.find(text[end + 2]) != std::string_view::npos;
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
