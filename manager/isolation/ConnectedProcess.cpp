#include "isolation/ConnectedProcess.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <system_error>

#include "posix/Arguments.h"
#include "values/ManagerError.h"

namespace ZebManager {
namespace {

/// What lists of processes show.
constexpr char kShownName[] = "zebcim";

ManagerError startError(const std::string& program, int error) {
  return ManagerError("cannot start " + program + ": " + std::strerror(error));
}

/// Signals as a program expects them when it starts, whatever this thread has set.
class SpawnAttributes {
 public:
  SpawnAttributes() {
    sigset_t none;
    sigset_t all;
    sigemptyset(&none);
    sigfillset(&all);
    posix_spawnattr_init(&_attributes);
    posix_spawnattr_setsigmask(&_attributes, &none);
    posix_spawnattr_setsigdefault(&_attributes, &all);
    posix_spawnattr_setflags(&_attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
  }
  SpawnAttributes(const SpawnAttributes&) = delete;
  SpawnAttributes& operator=(const SpawnAttributes&) = delete;
  ~SpawnAttributes() { posix_spawnattr_destroy(&_attributes); }
  const posix_spawnattr_t* get() const { return &_attributes; }

 private:
  posix_spawnattr_t _attributes{};
};

/// The socket under its number, and nothing above it.
class SpawnActions {
 public:
  SpawnActions(int socket, int number) {
    posix_spawn_file_actions_init(&_actions);
    posix_spawn_file_actions_adddup2(&_actions, socket, number);
    posix_spawn_file_actions_addclosefrom_np(&_actions, number + 1);
  }
  SpawnActions(const SpawnActions&) = delete;
  SpawnActions& operator=(const SpawnActions&) = delete;
  ~SpawnActions() { posix_spawn_file_actions_destroy(&_actions); }
  const posix_spawn_file_actions_t* get() const { return &_actions; }

 private:
  posix_spawn_file_actions_t _actions{};
};

}  // namespace

ConnectedProcess::ConnectedProcess(const ProcessSource& source, int childSocket) {
  if (source.socket.empty()) {
    start(source, childSocket);
  } else {
    connect(source.socket);
  }
}

void ConnectedProcess::start(const ProcessSource& source, int childSocket) {
  const std::string& program = source.program;
  std::array<int, 2> ends{};
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) throw startError(program, errno);
  _socket = ZEB::FileDescriptor(ends[0]);
  const ZEB::FileDescriptor theirs(ends[1]);
  fcntl(ends[0], F_SETFL, O_NONBLOCK);
  std::vector<std::string> words = source.arguments;
  words.insert(words.begin(), kShownName);
  pid_t id = -1;
  const int error = posix_spawn(&id, program.c_str(), SpawnActions(ends[1], childSocket).get(),
                                SpawnAttributes().get(), ZEB::argumentsOf(words).data(), environ);
  if (error != 0) throw startError(program, error);
  try {
    _process.emplace(id);
  } catch (const std::system_error& unheld) {
    throw startError(program, unheld.code().value());
  }
}

void ConnectedProcess::connect(const std::string& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (path.size() >= sizeof address.sun_path) throw startError(path, ENAMETOOLONG);
  path.copy(address.sun_path, path.size());
  _socket = ZEB::FileDescriptor(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
  if (!_socket || ::connect(socket(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
    throw startError("a process behind " + path, errno);
  }
}

void ConnectedProcess::kill() {
  if (_process) {
    _process->kill();
  } else {
    shutdown(socket(), SHUT_RDWR);
  }
}

void ConnectedProcess::closeSending() {
  shutdown(socket(), SHUT_WR);
}

std::string ConnectedProcess::reap() {
  if (!_process) return "its connection closed";
  const int status = _process->wait();
  return status < 0 ? "signal " + std::to_string(-status) : "exit status " + std::to_string(status);
}

}  // namespace ZebManager
