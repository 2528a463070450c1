// The little of SQLite that is needed here.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "values/ManagerError.h"

namespace ZebManager {

class SqliteError : public ManagerError {
 public:
  SqliteError(int errorCode, const std::string& text) : ManagerError(text), code(errorCode) {}
  /// Whether the file is not what SQLite wrote.
  bool damaged() const { return code == SQLITE_CORRUPT || code == SQLITE_NOTADB || code == SQLITE_FORMAT; }
  /// Whether the disk is what does not let it be written.
  bool unwritable() const;
  int code;
};

[[noreturn]] void failSqlite(sqlite3* database, int code);

/// A prepared statement. Use by one thread at a time, like its database, which has to outlive it.
class SqliteStatement {
 public:
  SqliteStatement(sqlite3* database, const char* text);

  /// Values of ?1, ?2 and so on, for the next run.
  template <class... Values>
  SqliteStatement& with(const Values&... values) {
    sqlite3_reset(_statement.get());
    int position = 0;
    (bind(++position, values), ...);
    return *this;
  }
  /// The next row; false after the last one.
  bool step();
  /// For statements that give no rows.
  void run();

  std::int64_t number(int column) const { return sqlite3_column_int64(_statement.get(), column); }
  std::string text(int column) const;

 private:
  struct Finalize {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
  };

  void bind(int position, std::int64_t value);
  void bind(int position, std::string_view value);
  void check(int code) const;

  std::unique_ptr<sqlite3_stmt, Finalize> _statement;
};

}  // namespace ZebManager
