#include "ethernet/ChangeWatch.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <system_error>
#include <thread>

#include "common/SignalsBlocked.h"
#include "kernel/Listener.h"

namespace ZEB {

using namespace ethernet;

class ChangeWatch::Thread {
 public:
  Thread(const Logger& logger, std::function<void(const LayerChange&)> changed)
      : _logger(logger),
        _changed(std::move(changed)),
        _stop(::eventfd(0, EFD_CLOEXEC)),
        _listener(Listener::toLayers()) {
    if (!_stop || !_listener.hears()) {
      giveUp(std::strerror(errno));
      return;
    }
    const SignalsBlocked inherited;
    try {
      _thread = std::thread([this] { run(); });
    } catch (const std::system_error& failure) {
      giveUp(failure.what());
    }
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
      const Announcements heard = _listener.drain();
      if (heard.any())
        _changed(
            {.anywhere = heard.everything || heard.nextHops || heard.rules, .interfaces = heard.interfaces});
      if (!_listener.hears()) return giveUp("the socket fails");
    }
  }
  void giveUp(const char* why) {
    _logger.error("changes of addresses and routes cannot be heard and are seen by polling alone: %s", why);
  }

  const Logger _logger;
  const std::function<void(const LayerChange&)> _changed;
  const FileDescriptor _stop;
  Listener _listener;
  std::thread _thread;
};

ChangeWatch::ChangeWatch(const Logger& logger, std::function<void(const LayerChange&)> changed)
    : _thread(std::make_unique<Thread>(logger, std::move(changed))) {}

ChangeWatch::~ChangeWatch() = default;

}  // namespace ZEB
