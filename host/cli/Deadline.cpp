#include "cli/Deadline.h"

#include <unistd.h>

#include <chrono>
#include <cstdlib>

namespace ZebHost {

Deadline::Deadline(unsigned seconds) {
  if (seconds > 0) _thread = std::thread([this, seconds] { watch(seconds); });
}

Deadline::~Deadline() {
  {
    const std::lock_guard lock(_mutex);
    _done = true;
  }
  _over.notify_one();
  if (_thread.joinable()) _thread.join();
}

void Deadline::watch(unsigned seconds) {
  std::unique_lock lock(_mutex);
  if (_over.wait_for(lock, std::chrono::seconds(seconds), [this] { return _done; })) return;
  const std::string line =
      "zebcim: the plug-in did not answer within " + std::to_string(seconds) + " s; --timeout allows more\n";
  static_cast<void>(!write(STDERR_FILENO, line.data(), line.size()));
  std::_Exit(1);
}

}  // namespace ZebHost
