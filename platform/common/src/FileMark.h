#pragma once

#include <sys/types.h>

#include <cstdint>
#include <ctime>
#include <string>

#include "Sqlite.h"

namespace ZEB {

/// What a store's file looks like from outside, to tell cheaply whether it is as it was: neither a lock nor
/// the content is needed for it.
class FileMark {
 public:
  /// Of the file of that name, which `database` has open. One that is not there has a mark like no other.
  static FileMark of(const std::string& file, const SqliteDatabase& database);

  bool isOfAFile() const { return _inode != 0; }
  /// Whether nothing has happened to the file from this to `later`.
  bool holds(const FileMark& later) const;
  /// Whether no transaction has changed the file from this to `later`: whatever has become of it, no database
  /// did it.
  bool sameTransactions(const FileMark& later) const;

 private:
  dev_t _device = 0;
  ino_t _inode = 0;
  off_t _size = 0;
  timespec _changed{};
  std::uint32_t _transactions = 0;
  /// The clock by which files are stamped has gone on since, so that no later change has the same stamp.
  bool _settled = false;
};

}  // namespace ZEB
