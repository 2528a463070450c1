#pragma once

#include <optional>
#include <stdexcept>
#include <string>

#include "FileMark.h"
#include "Sqlite.h"
#include "common/DataStore.h"

namespace ZEB {

/// A file that is no sound store.
class DamagedStore : public std::runtime_error {
  using runtime_error::runtime_error;
};

/// What a store's file has in it, and its mark at that moment.
struct StoreContent {
  std::shared_ptr<const DataStore::Values> values = std::make_shared<DataStore::Values>();
  FileMark mark;
};

/// Reads a store's file whole, and checks that it is sound. `known` is what was read from it, or written to
/// it, before: a file that has changed since, though no database changed it, is damaged however sound it
/// looks. Nothing when it is of an earlier format. Throws `DamagedStore`, `SqliteError`, and
/// `std::runtime_error` for a format that is newer than what is known here.
std::optional<StoreContent> readStore(SqliteDatabase& database, const std::string& file,
                                      const StoreContent& known);

/// Brings a file to the current format; one that has no tables yet begins with the values.
void upgradeStore(SqliteDatabase& database, const DataStore::Values& values);

enum class Existing { Keep, Replace };

/// Puts values into a store, within a transaction of the caller's.
void writeValues(SqliteDatabase& database, const DataStore::Values& values, Existing existing);

/// Begins a change and takes it back, on a connection of its own and without waiting. Throws what a change
/// would fail with.
void tryToWrite(const std::string& file);

}  // namespace ZEB
