#pragma once

#include <filesystem>

#include "Environment.h"

namespace ZEB::test {

/// Temporary directories are made in memory while this lives, where it costs nothing to bring a file to disk.
/// What survives the end of a process survives it there, too.
class FilesInMemory {
 private:
  Environment _place{"TMPDIR", std::filesystem::exists("/dev/shm")
                                   ? "/dev/shm"
                                   : std::filesystem::temp_directory_path().string()};
};

}  // namespace ZEB::test
