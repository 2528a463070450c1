#include "common/RunFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "Errno.h"
#include "common/Configuration.h"
#include "posix/FileDescriptor.h"

namespace ZEB {
namespace {

void writeAll(int file, const std::string& name, std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = ::write(file, text.data(), text.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) throwErrno(name);
    text.remove_prefix(static_cast<std::size_t>(written));
  }
}

/// Under a name of this process first, then renamed, so that readers find the old text or the new one. Not
/// synced: what is told here is over with the next start of the machine, and a sync holds a pass up for as
/// long as a disk takes.
void replaceFile(const std::string& file, const std::string& text) {
  const std::string temporary = file + "." + std::to_string(getpid());
  try {
    const FileDescriptor opened(
        open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC, 0600));
    // Everybody on this machine may read it, whatever the umask of the process.
    if (!opened || fchmod(opened.get(), 0644) != 0) throwErrno(temporary);
    writeAll(opened.get(), temporary, text);
    if (std::rename(temporary.c_str(), file.c_str()) != 0) throwErrno(file);
  } catch (const std::system_error&) {
    unlink(temporary.c_str());
    throw;
  }
}

}  // namespace

void replaceRunFile(const std::string& name, const std::string& text) {
  const std::string directory = Configuration::current()->runDirectory;
  if (directory.empty()) return;
  std::filesystem::create_directories(directory);
  replaceFile(directory + name, text);
}

void removeRunFile(const std::string& name) {
  const std::string directory = Configuration::current()->runDirectory;
  if (!directory.empty()) unlink((directory + name).c_str());
}

}  // namespace ZEB
