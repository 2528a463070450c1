#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace ZEB {

/// What SQLite refused, with its extended result code.
class SqliteError : public std::runtime_error {
 public:
  SqliteError(int code, const std::string& text) : std::runtime_error(text), _code(code) {}

  /// The file is not a database, not a sound one, or does not have in it what the statement speaks of.
  bool damaged() const;
  /// The file was renamed or deleted under the connection; nothing was written.
  bool moved() const;
  /// Somebody else has it locked.
  bool busy() const;
  /// What is to be read has to be repaired first, and the connection is for reading.
  bool needsWriting() const;

 private:
  int _code;
};

/// A connection to one database file, which is made when it is not there, but for reading. For one thread at
/// a time. Several processes may have the file open: whoever finds it locked tries again for as long as
/// `patience`.
class SqliteDatabase {
 public:
  enum class Access { Changing, Reading };

  /// Throws `std::system_error` when the file cannot be opened at all.
  SqliteDatabase(const std::string& file, std::chrono::milliseconds patience,
                 Access access = Access::Changing);
  ~SqliteDatabase();
  SqliteDatabase(const SqliteDatabase&) = delete;
  SqliteDatabase& operator=(const SqliteDatabase&) = delete;

  void setPatience(std::chrono::milliseconds patience) { _patience.limit = patience; }
  void execute(const char* sql);
  /// Ends the transaction that is under way, if any.
  void rollBack() noexcept;
  /// The first column of the first row.
  std::int64_t number(const char* sql);
  std::string text(const char* sql);
  bool readOnly() const;
  /// The file's own count of the transactions that have changed it. Read without a lock: it waits for nobody,
  /// and does not count what a journal beside the file keeps.
  std::uint32_t changes() const;
  [[noreturn]] void fail() const;

 private:
  friend class SqliteStatement;
  struct Close {
    void operator()(sqlite3* database) const;
  };
  struct Patience {
    std::chrono::milliseconds limit;
    std::chrono::steady_clock::time_point began{};
  };
  static int waitForLock(void* patience, int times);

  Patience _patience;
  std::unique_ptr<sqlite3, Close> _database;
};

/// A transaction of a database that outlives it: taken back at the end unless it was committed.
class SqliteTransaction {
 public:
  SqliteTransaction(SqliteDatabase& database, const char* begin) : _database(database) {
    database.execute(begin);
  }
  ~SqliteTransaction() { _database.rollBack(); }
  SqliteTransaction(const SqliteTransaction&) = delete;
  SqliteTransaction& operator=(const SqliteTransaction&) = delete;
  void commit() { _database.execute("COMMIT"); }

 private:
  SqliteDatabase& _database;
};

/// A prepared statement of a database that outlives it.
class SqliteStatement {
 public:
  SqliteStatement(SqliteDatabase& database, const char* sql);

  void bind(int parameter, std::string_view text);
  void bind(int parameter, std::int64_t number);
  /// Goes to the next row; false when there is none.
  bool step();
  std::int64_t number(int column) const;
  std::string text(int column) const;
  /// Makes the statement ready to run again, and lets go of what it locked.
  void reset();

 private:
  struct Finalize {
    void operator()(sqlite3_stmt* statement) const;
  };

  SqliteDatabase& _database;
  std::unique_ptr<sqlite3_stmt, Finalize> _statement;
};

}  // namespace ZEB
