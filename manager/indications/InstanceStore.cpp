#include "indications/InstanceStore.h"

#include <array>
#include <utility>
#include <vector>

#include "values/DateTimeText.h"
#include "values/ObjectPathText.h"
#include "values/Values.h"

namespace ZebManager {
namespace {

constexpr std::array kUpgrades = {
    "CREATE TABLE instance (name TEXT PRIMARY KEY NOT NULL, class TEXT NOT NULL) STRICT;"
    "CREATE TABLE value (instance TEXT NOT NULL, property TEXT NOT NULL, position INTEGER NOT NULL,"
    " text TEXT NOT NULL, PRIMARY KEY (instance, property, position)) STRICT, WITHOUT ROWID;",
};

// Positions of values that are no element of an array.
constexpr std::int64_t kScalar = -1;
constexpr std::int64_t kNoElements = -2;

std::string textOfValue(const CMPIData& data) {
  switch (data.type) {
    case CMPI_string:
      return std::string(textOf(data.value.string));
    case CMPI_dateTime:
      return formatDateTime(as<DateTime>(data.value.dateTime)->body());
    case CMPI_ref:
      return formatPath(as<ObjectPath>(data.value.ref)->body());
    default:
      return formatKeyValue(data);
  }
}

/// An array with one element more.
CMPIData appended(Arena& arena, const CMPIData* array, const CMPIData& element) {
  const CMPICount count = array ? as<Array>(array->value.array)->body().count : 0;
  Array* const longer = makeArray(arena, count + 1, element.type);
  for (CMPICount i = 0; i < count; ++i) {
    longer->body().elements[i] = as<Array>(array->value.array)->body().elements[i];
  }
  longer->body().elements[count] = element;
  return dataOf(longer);
}

}  // namespace

InstanceStore::InstanceStore(const std::string& directory, const InstanceNames& names, LogLine log)
    : _names(names), _log(std::move(log)), _file(directory, "interop.db", {kUpgrades}, _log) {}

void InstanceStore::load(const std::function<void(std::unique_ptr<StoredInstance>)>& take) {
  if (!_file.readable()) return;
  std::vector<std::pair<std::string, std::string>> found;
  SqliteStatement select = _file.prepare("SELECT name, class FROM instance ORDER BY rowid");
  while (select.step()) found.emplace_back(select.text(0), select.text(1));
  for (const auto& [name, className] : found) {
    try {
      take(read(name, className));
    } catch (const SqliteError&) {
      throw;
    } catch (const std::exception& error) {
      _log("stored instance " + oneLine(name) + " is left out: " + oneLine(error.what()));
    }
  }
}

std::unique_ptr<StoredInstance> InstanceStore::read(const std::string& name, const std::string& className) {
  const ClassDef& classDef = requireClass(_names.repository(), className);
  auto stored = std::make_unique<StoredInstance>(classDef, _names.nameSpace());
  Arena& arena = stored->arena;
  SqliteStatement select = _file.prepare(
      "SELECT property, position, text FROM value WHERE instance = ?1 ORDER BY property, position");
  select.with(name);
  while (select.step()) {
    const PropertyDef* const property = classDef.property(select.text(0));
    if (!property) throw ManagerError("it has no property '" + select.text(0) + "' any more");
    const CMPIType type = elementType(property->type);
    if (select.number(1) == kNoElements) {
      stored->set(property->name, dataOf(makeArray(arena, 0, type)));
      continue;
    }
    const CMPIData data =
        type == CMPI_ref ? dataOf(parsePath(arena, _names.repository(), _names.nameSpace(), select.text(2)))
                         : parseScalar(arena, type, select.text(2), property->name);
    const bool scalar = select.number(1) == kScalar;
    stored->set(property->name, scalar ? data : appended(arena, stored->value(property->name), data));
  }
  stored->completePath();
  return stored;
}

void InstanceStore::put(const std::string& name, const StoredInstance& stored) {
  SqliteTransaction transaction(_file);
  drop(name);
  _file.prepare("INSERT INTO instance VALUES (?1, ?2)").with(name, stored.classDef().name).run();
  SqliteStatement insert = _file.prepare("INSERT INTO value VALUES (?1, ?2, ?3, ?4)");
  for (const NamedValue& property : stored.instance->body().properties) writeProperty(insert, name, property);
  transaction.commit();
}

void InstanceStore::writeProperty(SqliteStatement& insert, const std::string& name,
                                  const NamedValue& property) {
  if (isNull(property.data)) return;
  if (!isArray(property.data.type)) {
    insert.with(name, property.name, kScalar, textOfValue(property.data)).run();
    return;
  }
  const ArrayBody& array = as<Array>(property.data.value.array)->body();
  if (array.count == 0) insert.with(name, property.name, kNoElements, "").run();
  for (CMPICount i = 0; i < array.count; ++i) {
    if (!isNull(array.elements[i])) {
      insert.with(name, property.name, std::int64_t{i}, textOfValue(array.elements[i])).run();
    }
  }
}

void InstanceStore::remove(const std::string& name) {
  SqliteTransaction transaction(_file);
  drop(name);
  transaction.commit();
}

void InstanceStore::drop(const std::string& name) {
  _file.prepare("DELETE FROM value WHERE instance = ?1").with(name).run();
  _file.prepare("DELETE FROM instance WHERE name = ?1").with(name).run();
}

}  // namespace ZebManager
