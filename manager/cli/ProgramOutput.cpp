#include "cli/ProgramOutput.h"

#include <poll.h>
#include <sys/resource.h>
#include <unistd.h>

#include <array>
#include <cerrno>

#include "cli/Programs.h"
#include "posix/Arguments.h"
#include "posix/ChildProcess.h"
#include "posix/Pipe.h"

namespace ZebManager {
namespace {

constexpr int kNotStarted = 127;
constexpr int kLowest = 19;  // of all priorities

std::vector<std::string> variablesFor(const Aside* aside) {
  std::vector<std::string> variables;
  for (char** variable = environ; *variable; ++variable) variables.emplace_back(*variable);
  if (!aside) return variables;
  std::erase_if(variables, [](const std::string& variable) { return variable.starts_with("TMPDIR="); });
  variables.push_back("TMPDIR=" + aside->temporaryFolder);
  return variables;
}

/// False when it is to be ended before that.
bool awaitOutput(int output, const Aside* aside) {
  std::array<pollfd, 2> events = {{{output, POLLIN, 0}, {aside ? aside->stop : -1, POLLIN, 0}}};
  while (poll(events.data(), events.size(), -1) < 0 && errno == EINTR) {
  }
  return events[1].revents == 0;
}

}  // namespace

std::string outputOf(const std::string& program, const std::vector<std::string>& arguments,
                     const Aside* aside) {
  std::vector<std::string> words = {findProgram(program)};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<std::string> variables = variablesFor(aside);
  ZEB::Pipe output = ZEB::makePipe();
  const auto argv = ZEB::argumentsOf(words), envp = ZEB::argumentsOf(variables);
  ZEB::ChildProcess child([&] {
    dup2(output.writing.get(), STDOUT_FILENO);
    if (aside) setpriority(PRIO_PROCESS, 0, kLowest);
    execve(argv.front(), argv.data(), envp.data());
    return kNotStarted;
  });
  output.writing = {};
  std::string text;
  std::array<char, 16384> buffer{};
  while (awaitOutput(output.reading.get(), aside)) {
    const ssize_t got = read(output.reading.get(), buffer.data(), buffer.size());
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) {
      if (child.wait() != 0) break;
      return text;
    }
    text.append(buffer.data(), static_cast<std::size_t>(got));
  }
  throw ProgramFailed(program + " has failed");
}

}  // namespace ZebManager
