#include "ethernet/ChangeWatch.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <cstdint>
#include <thread>

#include "common/SignalsBlocked.h"
#include "kernel/Listener.h"

namespace ZEB {

using namespace ethernet;

class ChangeWatch::Thread {
 public:
  explicit Thread(std::function<void()> changed)
      : _changed(std::move(changed)), _stop(::eventfd(0, EFD_CLOEXEC)), _listener(Listener::toLayers()) {
    if (!_stop || !_listener.hears()) return;
    const SignalsBlocked inherited;
    _thread = std::thread([this] { run(); });
  }
  ~Thread() {
    if (!_thread.joinable()) return;
    const std::uint64_t one = 1;
    (void)!::write(_stop.get(), &one, sizeof one);
    _thread.join();
  }
  Thread(const Thread&) = delete;
  Thread& operator=(const Thread&) = delete;

 private:
  void run() {
    while (_listener.wait(_stop.get())) {
      if (_listener.drain().any()) _changed();
    }
  }

  const std::function<void()> _changed;
  const FileDescriptor _stop;
  Listener _listener;
  std::thread _thread;
};

ChangeWatch::ChangeWatch(std::function<void()> changed)
    : _thread(std::make_unique<Thread>(std::move(changed))) {}

ChangeWatch::~ChangeWatch() = default;

}  // namespace ZEB
