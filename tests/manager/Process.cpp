#include "Process.h"

#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <stdexcept>
#include <utility>

#include "posix/Arguments.h"
#include "posix/ChildProcess.h"
#include "posix/Pipe.h"

extern char** environ;

namespace ZebManager {
namespace {

using ZEB::Pipe;

constexpr int kPatienceMs = 60'000;

/// Reads both pipes to their ends; false when that takes too long.
bool drain(const Pipe& out, const Pipe& err, Outcome& outcome, ZEB::ChildProcess& child, SignalAfter after) {
  std::array<pollfd, 2> watched = {{{out.reading.get(), POLLIN, 0}, {err.reading.get(), POLLIN, 0}}};
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
          child.kill(std::exchange(after.signal, 0));
        }
      }
    }
  }
  return true;
}

}  // namespace

Outcome run(const std::string& program, const std::vector<std::string>& arguments,
            const std::vector<std::string>& environment, const SignalAfter& after) {
  Pipe out = ZEB::makePipe();
  Pipe err = ZEB::makePipe();
  std::vector<std::string> words = arguments;
  words.insert(words.begin(), program);
  std::vector<std::string> variables(environment);
  for (char** variable = environ; *variable; ++variable) {
    if (!std::string(*variable).starts_with("ZEB_")) variables.emplace_back(*variable);
  }
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, out.writing.get(), STDOUT_FILENO);
  posix_spawn_file_actions_adddup2(&actions, err.writing.get(), STDERR_FILENO);
  pid_t id = -1;
  const int error = posix_spawn(&id, program.c_str(), &actions, nullptr, ZEB::argumentsOf(words).data(),
                                ZEB::argumentsOf(variables).data());
  posix_spawn_file_actions_destroy(&actions);
  if (error != 0) throw std::runtime_error("cannot start " + program);
  ZEB::ChildProcess child(id);
  out.writing = {};
  err.writing = {};
  Outcome outcome;
  if (!drain(out, err, outcome, child, after)) child.kill();
  outcome.status = std::max(child.wait(), -1);
  return outcome;
}

}  // namespace ZebManager
