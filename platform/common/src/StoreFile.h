#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "Sqlite.h"
#include "common/Logger.h"
#include "posix/FileDescriptor.h"

namespace ZEB {

/// How long an opened store, or one being opened, waits for another process that has it locked.
inline constexpr std::chrono::milliseconds kStorePatience{5000};

/// Opens the file of a store, brings it to the current format and makes it and its directory (0700) when they
/// are not there. A damaged or foreign file is put aside under a new name, which is logged, and a fresh one
/// begun. Throws `std::exception` with a text when there can be no store: the directory cannot be made or
/// read, the file is of a newer format, or somebody else has it locked.
std::unique_ptr<SqliteDatabase> openStoreFile(const std::string& file, std::chrono::milliseconds patience,
                                              const Logger& logger);

/// Holds the directory of a store's file until the result goes. Who takes it before it waits for the write
/// lock of the store, and lets go when it has that, cannot be overtaken by the writer it waits for: SQLite
/// itself lets a busy process starve another. Throws `std::exception` after `patience`.
FileDescriptor waitForTurn(const std::string& file, std::chrono::milliseconds patience);

}  // namespace ZEB
