#include "monitor/NetlinkThread.h"

#include <fcntl.h>
#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <sys/select.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <syslog.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "common/LibraryPin.h"
#include "common/SignalsBlocked.h"
#include "posix/FileDescriptor.h"

namespace ZEB {

int pipeFd[2] = {-1, -1};

/// What the thread works with; shared, because the thread may outlive the provider.
struct NetlinkThread::State {
  explicit State(Handler theHandler) : handler(std::move(theHandler)) {}

  enum class Phase { Starting, Running, Parked, Released };

  void enter(Phase next) {
    const std::lock_guard lock(mutex);
    phase = next;
    changed.notify_all();
  }
  void waitFor(Phase wanted) {
    std::unique_lock lock(mutex);
    changed.wait(lock, [&] { return phase >= wanted; });
  }

  const Handler handler;
  std::mutex mutex;
  std::condition_variable changed;
  Phase phase = Phase::Starting;
  pid_t threadId = 0;
};

namespace {

void logToSyslog(const std::string& text) {
  syslog(LOG_ERR, "%s", text.c_str());
}

[[noreturn]] void endProcess(const char* message, const char* prefix) {
  logToSyslog(message);
  std::perror(prefix);
  std::exit(1);
}

int openLinkSocket() {
  const int socketFd = socket(AF_NETLINK, SOCK_DGRAM | SOCK_CLOEXEC, NETLINK_ROUTE);
  if (socketFd < 0) {
    constexpr const char* kMessage = "Netlink socket failed. Unable to capture transient errors.";
    endProcess((std::string(kMessage) + "\n").c_str(), kMessage);
  }
  // A burst of messages must neither be lost nor end the process: room for it, and no overrun errors, since
  // any later message makes good for those that were dropped.
  const int roomy = 8 * 1024 * 1024;
  if (setsockopt(socketFd, SOL_SOCKET, SO_RCVBUFFORCE, &roomy, sizeof(roomy)) != 0) {
    setsockopt(socketFd, SOL_SOCKET, SO_RCVBUF, &roomy, sizeof(roomy));
  }
  const int on = 1;
  setsockopt(socketFd, SOL_NETLINK, NETLINK_NO_ENOBUFS, &on, sizeof(on));

  sockaddr_nl address{};
  address.nl_family = AF_NETLINK;
  address.nl_groups = RTMGRP_LINK;
  if (bind(socketFd, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0) {
    endProcess("Netlink bind failed. Unable to capture transient errors.\n", "bind failed");
  }
  return socketFd;
}

/// A set of descriptors for select(2) that has room for any descriptor, not for the first 1024 alone.
class DescriptorSet {
 public:
  explicit DescriptorSet(int largest) : _words(static_cast<std::size_t>(largest) / kBits + 1) {}

  void clear() { std::fill(_words.begin(), _words.end(), 0); }
  void add(int descriptor) { word(descriptor) |= bit(descriptor); }
  bool has(int descriptor) { return (word(descriptor) & bit(descriptor)) != 0; }
  fd_set* get() { return reinterpret_cast<fd_set*>(_words.data()); }

 private:
  static constexpr std::size_t kBits = 8 * sizeof(unsigned long);
  unsigned long& word(int descriptor) { return _words[static_cast<std::size_t>(descriptor) / kBits]; }
  static unsigned long bit(int descriptor) { return 1UL << (static_cast<std::size_t>(descriptor) % kBits); }

  std::vector<unsigned long> _words;
};

/// Handles messages until the stop end becomes readable.
void listen(int socketFd, int stopFd, const NetlinkThread::Handler& handler) {
  const int largest = std::max(socketFd, stopFd);
  DescriptorSet readable(largest);
  for (;;) {
    logToSyslog("Waiting for event notification from netlink. \n");
    readable.clear();
    readable.add(socketFd);
    readable.add(stopFd);
    if (select(largest + 1, readable.get(), nullptr, nullptr, nullptr) < 0) {
      endProcess("Error in select()", "Error in select()");
    }
    if (readable.has(socketFd)) {
      if (handler(socketFd) < 0) {
        endProcess("Netlink recv failed. Unable to capture transient errors.\n", "recv failed");
      }
    } else if (readable.has(stopFd)) {
      return;
    }
  }
}

constexpr char kStop = 'S';

/// The pipe, whatever descriptors there are of it.
struct stat thePipe {};

bool isPipe(int descriptor) {
  struct stat found {};
  return fstat(descriptor, &found) == 0 && found.st_dev == thePipe.st_dev && found.st_ino == thePipe.st_ino;
}

/// Whether the thread of that id is still there; its last instructions in this library's code are before
/// that.
bool threadExists(pid_t threadId) {
  return syscall(SYS_tgkill, getpid(), threadId, 0) == 0;
}

}  // namespace

NetlinkThread::NetlinkThread(const Logger& logger, Handler handler)
    : _logger(logger), _state(std::make_shared<State>(std::move(handler))) {}

void NetlinkThread::start() {
  _logger.info("Entered StartNetlinkThread.\n");
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED);

  auto shared = std::make_unique<std::shared_ptr<State>>(_state);
  const int result = [&] {
    const SignalsBlocked inherited;
    return pthread_create(&_thread, &attributes, &NetlinkThread::run, shared.get());
  }();
  pthread_attr_destroy(&attributes);
  // Before anything that may throw: what the thread uses is the thread's from now on, and who destroys us
  // finds a thread that can be stopped.
  if (result == 0) {
    static_cast<void>(shared.release());
    _started = true;
    _state->waitFor(State::Phase::Running);
  }

  _logger.info("In StartNetlinkThread.\n");
  if (result != 0) {
    _logger.error("pthread create error return code: %d", result);
  } else {
    _logger.info("Netlink Thread Started");
  }
}

void* NetlinkThread::run(void* argument) {
  const std::unique_ptr<std::shared_ptr<State>> shared(static_cast<std::shared_ptr<State>*>(argument));
  State& state = **shared;
  state.threadId = static_cast<pid_t>(syscall(SYS_gettid));
  if (pipe2(pipeFd, O_CLOEXEC) != 0) {
    logToSyslog(std::string("Unable to open a pipe for pipeFd file descriptor ") + std::strerror(errno) +
                "\n");
    pipeFd[0] = pipeFd[1] = -1;
    state.enter(State::Phase::Running);
  } else {
    const FileDescriptor readEnd(pipeFd[0]), writeEnd(pipeFd[1]);
    fstat(pipeFd[0], &thePipe);
    state.enter(State::Phase::Running);
    const FileDescriptor link(openLinkSocket());
    listen(link.get(), readEnd.get(), state.handler);
    // The stopper may not have come back from its write yet.
    const std::lock_guard lock(state.mutex);
    pipeFd[0] = pipeFd[1] = -1;
  }
  state.enter(State::Phase::Parked);
  state.waitFor(State::Phase::Released);
  return nullptr;
}

NetlinkThread::~NetlinkThread() {
  const bool written = writeStopByte() || writeAround();
  if (!_started) return;
  // The process may be ending on this very thread.
  if (_state->threadId == static_cast<pid_t>(syscall(SYS_gettid))) return;
  if (written) {
    join();
    return;
  }
  // The thread cannot be reached and goes on, so its code has to stay where it is.
  keepLibraryMapped();
}

// True when the thread will end: it was told to, or has ended by itself for want of a pipe.
bool NetlinkThread::writeStopByte() {
  constexpr int kTries = 3;
  const std::lock_guard lock(_state->mutex);
  for (int i = 0; i < kTries; ++i) {
    if (pipeFd[1] < 0) {
      _logger.info("Invalid file descriptor");
      return true;
    }
    const ssize_t result = write(pipeFd[1], &kStop, 1);
    if (result == 1) {
      _logger.info("wrote to pipeFd.");
      return true;
    }
    _logger.info("Unable to write to pipe fd, result: %d, Error: %s", result, std::strerror(errno));
  }
  _logger.info("Unable to write to pipe fd");
  return false;
}

// Descriptors are everybody's in the process, and somebody may have closed ours or put something else in its
// place. The pipe is reached through the end that the thread reads, too, if that is still what it was.
bool NetlinkThread::writeAround() {
  const std::lock_guard lock(_state->mutex);
  const std::string readEnd = "/proc/self/fd/" + std::to_string(pipeFd[0]);
  if (!isPipe(pipeFd[0])) return false;
  const FileDescriptor writeEnd(open(readEnd.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC));
  return isPipe(writeEnd.get()) && write(writeEnd.get(), &kStop, 1) == 1;
}

bool NetlinkThread::canBeStopped() {
  return pipeFd[1] < 0 || (isPipe(pipeFd[1]) && (fcntl(pipeFd[1], F_GETFL) & O_ACCMODE) != O_RDONLY);
}

// The thread is detached, so the join itself is answered at once, and is only allowed while the thread
// exists: the thread waits for it at its end, and is gone when the kernel says so.
void NetlinkThread::join() {
  _state->waitFor(State::Phase::Parked);
  pthread_join(_thread, nullptr);
  _state->enter(State::Phase::Released);
  while (threadExists(_state->threadId)) std::this_thread::sleep_for(std::chrono::microseconds(100));
}

}  // namespace ZEB
