#include "Process.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <stdexcept>
#include <utility>

extern char** environ;

namespace ZebManager {
namespace {

constexpr int kPatienceMs = 60'000;

struct Pipe {
  Pipe() {
    if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("pipe2");
  }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;
  ~Pipe() {
    for (const int end : ends) {
      if (end >= 0) close(end);
    }
  }
  void closeWriter() {
    close(ends[1]);
    ends[1] = -1;
  }
  std::array<int, 2> ends{-1, -1};
};

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

/// Reads both pipes to their ends; false when that takes too long.
bool drain(const Pipe& out, const Pipe& err, Outcome& outcome, pid_t child, SignalAfter after) {
  std::array<pollfd, 2> watched = {{{out.ends[0], POLLIN, 0}, {err.ends[0], POLLIN, 0}}};
  const std::array<std::string*, 2> texts = {&outcome.out, &outcome.err};
  std::array<char, 65536> buffer{};
  while (watched[0].fd >= 0 || watched[1].fd >= 0) {
    if (poll(watched.data(), watched.size(), kPatienceMs) <= 0) return false;
    for (std::size_t i = 0; i < watched.size(); ++i) {
      if (watched[i].fd < 0 || watched[i].revents == 0) continue;
      const ssize_t got = read(watched[i].fd, buffer.data(), buffer.size());
      if (got <= 0) {
        watched[i].fd = -1;
      } else {
        texts[i]->append(buffer.data(), static_cast<std::size_t>(got));
        if (after.signal != 0 && outcome.err.find(after.text) != std::string::npos) {
          kill(child, std::exchange(after.signal, 0));
        }
      }
    }
  }
  return true;
}

}  // namespace

Outcome run(const std::string& program, const std::vector<std::string>& arguments,
            const std::vector<std::string>& environment, const SignalAfter& after) {
  Pipe out;
  Pipe err;
  std::vector<std::string> words = arguments;
  words.insert(words.begin(), program);
  std::vector<std::string> variables(environment);
  for (char** variable = environ; *variable; ++variable) {
    if (!std::string(*variable).starts_with("ZEB_")) variables.emplace_back(*variable);
  }
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, out.ends[1], STDOUT_FILENO);
  posix_spawn_file_actions_adddup2(&actions, err.ends[1], STDERR_FILENO);
  pid_t child = -1;
  const int error = posix_spawn(&child, program.c_str(), &actions, nullptr, pointersTo(words).data(),
                                pointersTo(variables).data());
  posix_spawn_file_actions_destroy(&actions);
  if (error != 0) throw std::runtime_error("cannot start " + program);
  out.closeWriter();
  err.closeWriter();
  Outcome outcome;
  if (!drain(out, err, outcome, child, after)) kill(child, SIGKILL);
  int status = 0;
  waitpid(child, &status, 0);
  outcome.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  return outcome;
}

}  // namespace ZebManager
