#include "cli/ProgramOutput.h"

#include <unistd.h>

#include <array>
#include <cerrno>

#include "cli/Programs.h"
#include "posix/Arguments.h"
#include "posix/ChildProcess.h"
#include "posix/Pipe.h"

namespace ZebManager {

std::string outputOf(const std::string& program, const std::vector<std::string>& arguments) {
  constexpr int kNotStarted = 127;
  std::vector<std::string> words = {findProgram(program)};
  words.insert(words.end(), arguments.begin(), arguments.end());
  ZEB::Pipe output = ZEB::makePipe();
  const auto argv = ZEB::argumentsOf(words);
  ZEB::ChildProcess child([&] {
    dup2(output.writing.get(), STDOUT_FILENO);
    execv(argv.front(), argv.data());
    return kNotStarted;
  });
  output.writing = {};
  std::string text;
  std::array<char, 16384> buffer{};
  for (;;) {
    const ssize_t got = read(output.reading.get(), buffer.data(), buffer.size());
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) break;
    text.append(buffer.data(), static_cast<std::size_t>(got));
  }
  if (const int status = child.wait(); status != 0) throw ProgramFailed(program + " has failed");
  return text;
}

}  // namespace ZebManager
