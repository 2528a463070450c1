// Writes what the kernel knows of this host's Ethernet to a snapshot file, or checks such a file.
//
//   zeb-capture [--anonymize] FILE     "-" for standard output
//   zeb-capture --check FILE
//   zeb-capture --facts                what can be known, and where the kernel says it, as JSON
//
// Exit status: 0 done, 1 failed with one line on standard error, 2 wrong usage.

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <random>
#include <string>
#include <string_view>

#include "ethernet/Sources.h"
#include "kernel/KernelSource.h"
#include "posix/FileDescriptor.h"
#include "recorded/Anonymizer.h"
#include "recorded/Origins.h"
#include "recorded/SnapshotWriter.h"

namespace {

using namespace ZEB::ethernet;

constexpr int kFailed = 1;
constexpr int kUsage = 2;

int usage() {
  std::cerr << "usage: zeb-capture [--anonymize] FILE | zeb-capture --check FILE | zeb-capture --facts\n";
  return kUsage;
}

int fail(const std::string& why) {
  std::cerr << "zeb-capture: " << why << "\n";
  return kFailed;
}

int check(const std::string& file) {
  const auto trouble = checkRecording(file);
  return trouble ? fail(*trouble) : 0;
}

std::uint64_t randomKey() {
  std::random_device device;
  return static_cast<std::uint64_t>(device()) << 32 | device();
}

bool writeAll(int descriptor, std::string_view text) {
  while (!text.empty()) {
    const ssize_t went = ::write(descriptor, text.data(), text.size());
    if (went < 0 && errno != EINTR) return false;
    text.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(went, 0)));
  }
  return true;
}

/// A pipe or a device, say, or a link, which is not followed.
bool isThereAndNoFile(const std::string& file) {
  std::error_code error;
  const auto status = std::filesystem::symlink_status(file, error);
  return std::filesystem::exists(status) && !std::filesystem::is_regular_file(status);
}

/// To a file of its own first, so that a reader never finds half of it. What is no plain file is never put
/// away for one.
bool write(const std::string& file, const std::string& text) {
  if (file == "-") return static_cast<bool>(std::cout << text << std::flush);
  constexpr int kHow = O_WRONLY | O_NOFOLLOW | O_NOCTTY | O_CLOEXEC;
  if (isThereAndNoFile(file)) {
    const ZEB::FileDescriptor there(open(file.c_str(), kHow));
    return there && writeAll(there.get(), text);
  }
  const std::string partial = file + "." + std::to_string(randomKey()) + ".part";
  ZEB::FileDescriptor fresh(open(partial.c_str(), kHow | O_CREAT | O_EXCL, 0666));
  if (!fresh) return false;
  const bool written = writeAll(fresh.get(), text) && fsync(fresh.get()) == 0;
  if (written && std::rename(partial.c_str(), file.c_str()) == 0) return true;
  const int error = errno;
  std::remove(partial.c_str());
  errno = error;
  return false;
}

int capture(const std::string& file, bool anonymous) {
  auto snapshot = KernelSource().readAll();
  if (!snapshot) return fail(snapshot.failure().what);
  if (anonymous) anonymize(*snapshot, randomKey());
  return write(file, writeSnapshot(std::move(*snapshot)))
             ? 0
             : fail("cannot write " + file + ": " + std::strerror(errno));
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 2 && std::string_view(argv[1]) == "--facts") {
    std::cout << factsAsJson() << std::flush;
    return std::cout ? 0 : fail("cannot write");
  }
  bool anonymous = false;
  bool checking = false;
  std::string file;
  for (int i = 1; i < argc; ++i) {
    const std::string_view argument = argv[i];
    if (argument == "--anonymize") {
      anonymous = true;
    } else if (argument == "--check") {
      checking = true;
    } else if ((argument.starts_with("-") && argument != "-") || !file.empty()) {
      return usage();
    } else {
      file = argument;
    }
  }
  if (file.empty() || (anonymous && checking)) return usage();
  return checking ? check(file) : capture(file, anonymous);
}
