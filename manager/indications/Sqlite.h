// The little of SQLite that is needed here.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "indications/Subscription.h"
#include "values/ManagerError.h"

namespace ZebManager {

class SqliteError : public ManagerError {
 public:
  SqliteError(int errorCode, const std::string& text) : ManagerError(text), code(errorCode) {}
  /// Whether the file is not what SQLite wrote.
  bool damaged() const { return code == SQLITE_CORRUPT || code == SQLITE_NOTADB || code == SQLITE_FORMAT; }
  int code;
};

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

/// An open file of a known format.
class SqliteFile {
 public:
  /// Opens `directory/name`, both of which are made when they are missing. `upgrades` brings the file from
  /// each format to the next, from an empty one on, and has to outlive this. A damaged file is put aside
  /// under a new name and a fresh one begun, with a line in the log. Throws ManagerError, also for a file of
  /// a format that is not known yet.
  SqliteFile(const std::string& directory, const std::string& name, std::span<const char* const> upgrades,
             LogLine log);

  /// The same for a file that turned out to be damaged while it was in use: from here on it is empty. No
  /// statement may be left. Throws ManagerError.
  void beginAnew(const std::string& why);

  void execute(const char* statements);
  SqliteStatement prepare(const char* text) { return {_database.get(), text}; }
  /// Gives the disk back what much of the file is no longer used for. Throws SqliteError.
  void shrink();

 private:
  struct Close {
    void operator()(sqlite3* database) const { sqlite3_close_v2(database); }
  };

  void openOrRefuse();
  void open();
  void checkHeader();
  void upgrade();
  void checkContent();
  std::int64_t numberOf(const char* question);

  const std::string _path;
  const std::span<const char* const> _upgrades;
  const LogLine _log;
  std::unique_ptr<sqlite3, Close> _database;
};

/// All or nothing: what is not committed is taken back.
class SqliteTransaction {
 public:
  explicit SqliteTransaction(SqliteFile& file) : _file(file) { _file.execute("BEGIN IMMEDIATE"); }
  SqliteTransaction(const SqliteTransaction&) = delete;
  SqliteTransaction& operator=(const SqliteTransaction&) = delete;
  ~SqliteTransaction();
  void commit();

 private:
  SqliteFile& _file;
  bool _open = true;
};

}  // namespace ZebManager
