#include "Program.h"

#include <fcntl.h>
#include <unistd.h>

#include "GuestError.h"
#include "posix/Arguments.h"

namespace ZEB::guest {

ChildProcess startProgram(std::vector<std::string> arguments, const std::filesystem::path& log) {
  const FileDescriptor output(::open(log.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644));
  if (!output) throw GuestError::fromErrno(log.string());
  const std::vector<char*> pointers = argumentsOf(arguments);
  return ChildProcess([&] {
    const FileDescriptor nothing(::open("/dev/null", O_RDONLY | O_CLOEXEC));
    ::dup2(nothing.get(), STDIN_FILENO);
    ::dup2(output.get(), STDOUT_FILENO);
    ::dup2(output.get(), STDERR_FILENO);
    ::execvp(pointers[0], pointers.data());
    return 127;
  });
}

}  // namespace ZEB::guest
