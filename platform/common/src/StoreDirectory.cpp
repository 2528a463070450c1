#include "StoreDirectory.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <thread>

#include "Errno.h"

namespace ZEB {
namespace {

namespace fs = std::filesystem;

FileDescriptor openDirectory(const fs::path& directory) {
  return FileDescriptor(open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

}  // namespace

void makeStoreDirectory(const fs::path& directory) {
  if (mkdir(directory.c_str(), S_IRWXU) != 0) {
    if (errno == EEXIST) return;
    if (errno != ENOENT || !directory.has_relative_path()) throwErrno(directory);
    makeStoreDirectory(directory.parent_path());
    if (mkdir(directory.c_str(), S_IRWXU) != 0 && errno != EEXIST) throwErrno(directory);
  }
  syncStoreDirectory(directory.parent_path());
}

FileDescriptor lockStoreDirectory(const fs::path& directory, std::chrono::milliseconds patience) {
  FileDescriptor held = openDirectory(directory);
  if (!held) throwErrno(directory);
  const auto end = std::chrono::steady_clock::now() + patience;
  while (flock(held.get(), LOCK_EX | LOCK_NB) != 0) {
    if (errno != EWOULDBLOCK && errno != EINTR) throwErrno(directory);
    if (std::chrono::steady_clock::now() >= end) throwErrno(directory.string() + " is locked");
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  return held;
}

void syncStoreDirectory(const fs::path& directory) {
  const FileDescriptor opened = openDirectory(directory);
  if (opened) fsync(opened.get());
}

}  // namespace ZEB
