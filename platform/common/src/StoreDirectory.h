#pragma once

#include <chrono>
#include <filesystem>

#include "posix/FileDescriptor.h"

namespace ZEB {

/// Makes the directory (0700) and what is lacking above it. Each is on disk with its entry before the next.
/// Throws `std::system_error`.
void makeStoreDirectory(const std::filesystem::path& directory);

/// Holds the directory for one process at a time, until the result goes. Throws `std::system_error`, after
/// `patience` when somebody else has it.
FileDescriptor lockStoreDirectory(const std::filesystem::path& directory, std::chrono::milliseconds patience);

/// Puts on disk which files are in it, as far as that can be done.
void syncStoreDirectory(const std::filesystem::path& directory);

}  // namespace ZEB
