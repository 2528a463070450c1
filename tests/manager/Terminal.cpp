#include "Terminal.h"

#include <poll.h>
#include <pty.h>
#include <unistd.h>

#include <algorithm>
#include <array>

#include "posix/Arguments.h"
#include "posix/ChildProcess.h"

namespace ZebManager {

Outcome runOnTerminal(unsigned columns, const std::string& program, const std::vector<std::string>& arguments,
                      const std::vector<std::string>& environment) {
  constexpr int kPatienceMs = 60'000;
  const winsize size{24, static_cast<unsigned short>(columns), 0, 0};
  int master = -1;
  int slave = -1;
  if (openpty(&master, &slave, nullptr, nullptr, &size) != 0) return {};
  const ZEB::FileDescriptor ours(master);
  ZEB::FileDescriptor theirs(slave);
  std::vector<std::string> words = arguments;
  words.insert(words.begin(), {"env"});
  words.insert(words.begin() + 1, environment.begin(), environment.end());
  words.insert(words.begin() + 1 + static_cast<std::ptrdiff_t>(environment.size()), program);
  ZEB::ChildProcess child([&] {
    for (const int number : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) dup2(theirs.get(), number);
    execv("/usr/bin/env", ZEB::argumentsOf(words).data());
    return 127;
  });
  theirs = {};
  Outcome outcome;
  std::array<char, 4096> buffer{};
  for (pollfd ready{ours.get(), POLLIN, 0}; poll(&ready, 1, kPatienceMs) > 0;) {
    const ssize_t got = read(ours.get(), buffer.data(), buffer.size());
    if (got <= 0) break;
    outcome.out.append(buffer.data(), static_cast<std::size_t>(got));
  }
  std::erase(outcome.out, '\r');
  outcome.status = std::max(child.wait(), -1);
  return outcome;
}

}  // namespace ZebManager
