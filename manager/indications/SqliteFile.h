// A file that SQLite keeps.
#pragma once

#include <memory>
#include <span>
#include <string>

#include "indications/Sqlite.h"
#include "indications/Subscription.h"

namespace ZebManager {

/// What brings a file from each format to the next, from an empty one on, and what is set whenever it is
/// opened. Has to outlive the file.
struct SqliteFormat {
  std::span<const char* const> upgrades;
  const char* settings = "";
};

/// An open file of a known format.
class SqliteFile {
 public:
  /// Opens `directory/name`, both of which are made when they are missing. A damaged file is put aside under
  /// a new name and a fresh one begun. One that cannot be written is opened for reading, and where there is
  /// none and can be none, or a damaged one has to stay, there is nothing to read. All of that is a line in
  /// the log. Throws ManagerError when there is a file that cannot be read, also for one of a format that is
  /// not known yet.
  SqliteFile(const std::string& directory, const std::string& name, const SqliteFormat& format, LogLine log);

  /// The same for a file that turned out to be damaged while it was in use: from here on it is empty. No
  /// statement may be left. Throws ManagerError.
  void beginAnew(const std::string& why);

  bool readable() const { return _database != nullptr; }
  /// A file that could not be written is tried again. No statement may be left then. Throws SqliteError.
  void requireWritable();
  void execute(const char* statements);
  SqliteStatement prepare(const char* text) { return {_database.get(), text}; }
  /// Gives the disk back what much of the file is no longer used for, unless there is no room to do it in.
  /// Throws SqliteError.
  void shrink();

 private:
  struct Close {
    void operator()(sqlite3* database) const { sqlite3_close_v2(database); }
  };
  using Database = std::unique_ptr<sqlite3, Close>;

  void open();
  void openForWriting();
  void openForReading();
  void copyToMemory();
  void connect(const std::string& name, int flags);
  std::int64_t formatNumber() const;
  void checkHeader();
  void checkWritable();
  void upgrade();
  void checkContent();
  void makeShrinkable();
  std::int64_t numberOf(const char* question);

  const std::string _path;
  const SqliteFormat _format;
  const LogLine _log;
  Database _database;  // null while there is nothing to read
  bool _writable = false;
  bool _abandoned = false;  // a damaged file that could not be put aside was spoken of
};

/// All or nothing: what is not committed is taken back.
class SqliteTransaction {
 public:
  /// Throws SqliteError, also when the file cannot be written.
  explicit SqliteTransaction(SqliteFile& file) : _file(file) {
    _file.requireWritable();
    _file.execute("BEGIN IMMEDIATE");
  }
  SqliteTransaction(const SqliteTransaction&) = delete;
  SqliteTransaction& operator=(const SqliteTransaction&) = delete;
  ~SqliteTransaction();
  void commit();

 private:
  SqliteFile& _file;
  bool _open = true;
};

}  // namespace ZebManager
