#include "StoreFormat.h"

#include <array>

namespace ZEB {
namespace {

constexpr std::int64_t kApplication = 0x5A454253;  // "ZEBS", where SQLite keeps whose file it is

/// What brings a file from one format version to the next; the first makes an empty file version 1.
constexpr std::array kUpgrades = {
    "CREATE TABLE value (key TEXT PRIMARY KEY NOT NULL,"
    " number INTEGER NOT NULL CHECK (number BETWEEN 0 AND 4294967295)) STRICT, WITHOUT ROWID;",
};
constexpr std::int64_t kFormat = kUpgrades.size();

std::int64_t formatOf(SqliteDatabase& database) {
  return database.number("PRAGMA user_version");
}

void checkOwner(SqliteDatabase& database, std::int64_t format) {
  const bool fresh = format == 0 && database.number("SELECT count(*) FROM sqlite_schema") == 0;
  if (!fresh && database.number("PRAGMA application_id") != kApplication) {
    throw DamagedStore("the file of another program");
  }
}

void checkFormat(std::int64_t format, bool changedByDatabase) {
  if (format >= 0 && format <= kFormat) return;
  const std::string text = "its format " + std::to_string(format) + " is ";
  if (format < 0 || !changedByDatabase) throw DamagedStore(text + "none");
  throw std::runtime_error(text + "newer than " + std::to_string(kFormat) +
                           ", which is the newest that is known here");
}

void checkSound(SqliteDatabase& database) {
  const std::string findings = database.text("PRAGMA quick_check(1)");
  if (findings != "ok") throw DamagedStore(findings);
}

DataStore::Values readValues(SqliteDatabase& database) {
  DataStore::Values values;
  SqliteStatement select(database, "SELECT key, number FROM value");
  while (select.step()) values.emplace(select.text(0), static_cast<std::uint32_t>(select.number(1)));
  return values;
}

std::string pragma(const char* name, std::int64_t value) {
  return std::string("PRAGMA ") + name + " = " + std::to_string(value);
}

}  // namespace

std::optional<StoreContent> readStore(SqliteDatabase& database, const std::string& file,
                                      const StoreContent& known) {
  SqliteTransaction transaction(database, "BEGIN");
  const std::int64_t format = formatOf(database);
  // Nobody changes the file from here to the end.
  StoreContent content{known.values, FileMark::of(file, database)};
  const bool changedByDatabase = !known.mark.sameTransactions(content.mark);
  checkOwner(database, format);
  checkFormat(format, changedByDatabase);
  checkSound(database);
  if (format < kFormat) return std::nullopt;
  auto values = readValues(database);
  if (values != *known.values) {
    if (!changedByDatabase) throw DamagedStore("its values have changed by themselves");
    content.values = std::make_shared<DataStore::Values>(std::move(values));
  }
  transaction.commit();
  return content;
}

void upgradeStore(SqliteDatabase& database, const DataStore::Values& values) {
  SqliteTransaction transaction(database, "BEGIN IMMEDIATE");
  const std::int64_t from = formatOf(database);
  for (auto format = from; format < kFormat; ++format) {
    database.execute(kUpgrades[static_cast<std::size_t>(format)]);
  }
  if (from == 0) writeValues(database, values, Existing::Keep);
  database.execute(pragma("application_id", kApplication).c_str());
  database.execute(pragma("user_version", kFormat).c_str());
  transaction.commit();
}

void writeValues(SqliteDatabase& database, const DataStore::Values& values, Existing existing) {
  SqliteStatement insert(database, existing == Existing::Keep
                                       ? "INSERT INTO value (key, number) VALUES (?1, ?2)"
                                         " ON CONFLICT (key) DO NOTHING"
                                       : "INSERT INTO value (key, number) VALUES (?1, ?2)"
                                         " ON CONFLICT (key) DO UPDATE SET number = excluded.number");
  for (const auto& [key, number] : values) {
    insert.bind(1, key);
    insert.bind(2, std::int64_t{number});
    insert.step();
    insert.reset();
  }
}

void tryToWrite(const std::string& file) {
  SqliteDatabase database(file, std::chrono::milliseconds(0));
  // It is not meant to stay, so it need not reach the disk.
  database.execute("PRAGMA synchronous = OFF");
  const SqliteTransaction transaction(database, "BEGIN IMMEDIATE");
  database.execute(pragma("user_version", kFormat).c_str());
}

}  // namespace ZEB
