#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "Sqlite.h"
#include "StoreFormat.h"
#include "common/Logger.h"
#include "posix/FileDescriptor.h"

namespace ZEB {

/// How long an opened store, or one being opened, waits for another process that has it locked.
inline constexpr std::chrono::milliseconds kStorePatience{5000};

/// There is no such file, and there can be none.
class NoStore : public std::runtime_error {
  using runtime_error::runtime_error;
};

struct OpenStore {
  std::unique_ptr<SqliteDatabase> database;
  StoreContent content;
};

/// Opens the file of a store, brings it to the current format and makes it and its directory (0700) when they
/// are not there. A damaged or foreign file is put aside under a new name. A fresh one begins with the values
/// that are `known`; the log says so, but of the very first. Throws `NoStore`, and another `std::exception`
/// when the file is there and cannot be used as yet: it is of a newer format, somebody else has it locked, or
/// the disk is full.
OpenStore openStoreFile(const std::string& file, std::chrono::milliseconds patience,
                        const StoreContent& known, const Logger& logger);

/// Holds the directory of a store's file until the result goes. Who takes it before it waits for the write
/// lock of the store, and lets go when it has that, cannot be overtaken by the writer it waits for: SQLite
/// itself lets a busy process starve another. Throws `std::exception` after `patience`.
FileDescriptor waitForTurn(const std::string& file, std::chrono::milliseconds patience);

}  // namespace ZEB
