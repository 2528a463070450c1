#include "values/ObjectPathText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdlib>

#include "values/DateTimeText.h"
#include "values/Values.h"

namespace ZebManager {
namespace {

constexpr int kDeepestReference = 8;
constexpr std::size_t kLongestPath = 1U << 16;
constexpr std::size_t kUsualPath = 200;  // characters, of one without references

void appendQuoted(std::string& out, std::string_view text) {
  out += '"';
  for (std::size_t stop = 0; (stop = std::min(text.find('"'), text.find('\\'))) != std::string_view::npos;) {
    out.append(text.substr(0, stop)) += '\\';
    out += text[stop];
    text.remove_prefix(stop + 1);
  }
  out.append(text) += '"';
}

std::string_view withoutSlashes(std::string_view nameSpace) {
  while (nameSpace.starts_with('/')) nameSpace.remove_prefix(1);
  while (nameSpace.ends_with('/')) nameSpace.remove_suffix(1);
  return nameSpace;
}

std::string listOf(const std::vector<const PropertyDef*>& keys) {
  std::string list;
  for (const PropertyDef* key : keys) list += (list.empty() ? "" : ", ") + key->name;
  return list;
}

/// Reads one path. Errors name the whole text that was given.
class PathParser {
 public:
  PathParser(Arena& arena, const ClassRepository& repository, std::string_view nameSpace)
      : _arena(arena), _repository(repository), _nameSpace(nameSpace) {}

  ObjectPath* parse(std::string_view text, int depth, KeysGiven given = KeysGiven::All);

 private:
  [[noreturn]] void fail(const std::string& what) const {
    throw ManagerError("path '" + std::string(_text.substr(0, 300)) + "': " + what);
  }
  void readHostAndNameSpace(PathBody& path);
  void readKeys(ObjectPath& path, const ClassDef& classDef);
  CMPIData readKeyValue(const PropertyDef& key);
  std::string readQuoted(const PropertyDef& key);
  void requireKeys(const PathBody& path, const ClassDef& classDef) const;

  Arena& _arena;
  const ClassRepository& _repository;
  std::string_view _nameSpace;
  std::string_view _text;
  std::string_view _rest;
  int _depth = 0;
};

ObjectPath* PathParser::parse(std::string_view text, int depth, KeysGiven given) {
  _text = _rest = text;
  _depth = depth;
  if (depth > kDeepestReference) fail("references are nested too deep");
  if (text.size() > kLongestPath) fail("too long");
  ObjectPath* const path = makePath(_arena, _nameSpace, {});
  readHostAndNameSpace(path->body());
  const std::string_view className = _rest.substr(0, _rest.find('.'));
  const ClassDef* const classDef = _repository.find(className);
  if (!classDef) {
    fail("unknown class '" + std::string(className) + "': expected one that 'zebcim classes' lists");
  }
  path->body().className = classDef->name;
  _rest.remove_prefix(className.size());
  if (!_rest.empty()) readKeys(*path, *classDef);
  if (given == KeysGiven::All) requireKeys(path->body(), *classDef);
  return path;
}

void PathParser::readHostAndNameSpace(PathBody& path) {
  if (_rest.starts_with("//")) {
    const std::size_t slash = _rest.find('/', 2);
    if (slash == std::string_view::npos || slash == 2) fail("expected //host/namespace:Class.Key=value");
    path.host = _arena.copy(_rest.substr(2, slash - 2));
    _rest.remove_prefix(slash + 1);
  }
  const std::size_t stop = _rest.find_first_of(":.=\"");
  if (stop == std::string_view::npos || _rest[stop] != ':') return;
  const std::string_view nameSpace = withoutSlashes(_rest.substr(0, stop));
  if (!sameName(nameSpace, withoutSlashes(_nameSpace))) {
    fail("namespace '" + std::string(nameSpace) + "' is not served: expected " + std::string(_nameSpace));
  }
  _rest.remove_prefix(stop + 1);
}

void PathParser::readKeys(ObjectPath& path, const ClassDef& classDef) {
  do {
    _rest.remove_prefix(1);
    const std::size_t equals = _rest.find('=');
    if (equals == std::string_view::npos)
      fail("expected Key=value at '" + std::string(_rest.substr(0, 40)) + "'");
    const std::string_view name = _rest.substr(0, equals);
    const PropertyDef* const key = classDef.property(name);
    if (!key || !key->key) {
      fail("'" + std::string(name) + "' is no key of " + classDef.name + ": expected " +
           listOf(classDef.keys()));
    }
    if (path.body().keys.find(name)) fail("key '" + key->name + "' is given twice");
    _rest.remove_prefix(equals + 1);
    CMPIData value = readKeyValue(*key);
    value.state = CMPI_keyValue;
    path.body().keys.append(_arena, key->name).data = value;
  } while (_rest.starts_with(','));
  if (!_rest.empty()) fail("expected ',' at '" + std::string(_rest.substr(0, 40)) + "'");
}

std::string PathParser::readQuoted(const PropertyDef& key) {
  std::string value;
  if (!_rest.starts_with('"')) {
    fail("key '" + key.name + "' is a " + typeName(key.type) + ": expected its value in double quotes");
  }
  for (std::size_t i = 1; i < _rest.size(); ++i) {
    if (_rest[i] == '"') {
      _rest.remove_prefix(i + 1);
      return value;
    }
    if (_rest[i] == '\\' && i + 1 < _rest.size()) ++i;
    value += _rest[i];
  }
  fail("the value of key '" + key.name + "' has no closing quote");
}

CMPIData PathParser::readKeyValue(const PropertyDef& key) {
  const std::string what = "path '" + std::string(_text.substr(0, 300)) + "': key '" + key.name + "'";
  if (key.type == CMPI_ref) {
    const std::string nested = readQuoted(key);
    return dataOf(PathParser(_arena, _repository, _nameSpace).parse(nested, _depth + 1));
  }
  if (key.type == CMPI_string || key.type == CMPI_dateTime || key.type == CMPI_char16) {
    return parseScalar(_arena, key.type, readQuoted(key), what);
  }
  const std::string_view value = _rest.substr(0, _rest.find(','));
  _rest.remove_prefix(value.size());
  return parseScalar(_arena, key.type, value, what);
}

void PathParser::requireKeys(const PathBody& path, const ClassDef& classDef) const {
  for (const PropertyDef* key : classDef.keys()) {
    if (!path.keys.find(key->name)) {
      fail("key '" + key->name + "' is missing: " + classDef.name + " has the keys " +
           listOf(classDef.keys()));
    }
  }
  if (path.keys.count == 0) fail(classDef.name + " has no keys, so it has no instances to name");
}

template <class Number>
CMPIData parseReal(CMPIType type, std::string_view text, const std::string& what, Number CMPIValue::*member) {
  CMPIValue value{};
  Number number{};
  const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc{} || stop != text.data() + text.size()) {
    throw ManagerError(what + ": expected a number, not '" + std::string(text) + "'");
  }
  value.*member = number;
  return dataOf(type, value);
}

CMPIData parseIntegerValue(CMPIType type, std::string_view text, const std::string& what) {
  const IntegerRange range = *integerRange(type);
  const auto literal = parseInteger(text);
  if (!literal || !fits(*literal, range)) {
    throw ManagerError(what + ": expected " + typeName(type) + " (" + std::to_string(range.min) + " to " +
                       std::to_string(range.max) + "), not '" + std::string(text) + "'");
  }
  CMPIValue value{};
  value.uint64 = literal->negative ? ~literal->magnitude + 1 : literal->magnitude;  // little-endian union
  return dataOf(type, value);
}

}  // namespace

std::string formatKeyValue(const CMPIData& value) {
  std::string out;
  if (isNull(value)) return "NULL";
  if (const auto range = integerRange(value.type)) {
    return range->min < 0 ? std::to_string(signedOf(value)) : std::to_string(unsignedOf(value));
  }
  std::array<char, 40> number{};
  switch (value.type) {
    case CMPI_boolean:
      return value.value.boolean ? "TRUE" : "FALSE";
    case CMPI_real32:
      return {number.data(), std::to_chars(number.begin(), number.end(), value.value.real32).ptr};
    case CMPI_real64:
      return {number.data(), std::to_chars(number.begin(), number.end(), value.value.real64).ptr};
    case CMPI_ref:
      appendQuoted(out, formatPath(as<ObjectPath>(value.value.ref)->body()));
      return out;
    case CMPI_dateTime:
      appendQuoted(out, formatDateTime(as<DateTime>(value.value.dateTime)->body()));
      return out;
    case CMPI_char16:
      appendQuoted(out, utf8Of(value.value.char16));
      return out;
    default:
      appendQuoted(out, textOf(value.value.string));
      return out;
  }
}

std::string formatPath(const PathBody& path) {
  std::string out;
  out.reserve(kUsualPath);
  if (!path.host.empty()) out.append("//").append(path.host).append("/");
  if (!path.nameSpace.empty()) out.append(path.nameSpace).append(":");
  out += path.className;
  char separator = '.';
  for (const NamedValue& key : path.keys) {
    out += separator;
    out.append(key.name) += '=';
    if (key.data.type == CMPI_string && !isNull(key.data)) {
      appendQuoted(out, textOf(key.data.value.string));
    } else {
      out += formatKeyValue(key.data);
    }
    separator = ',';
  }
  return out;
}

ObjectPath* parsePath(Arena& arena, const ClassRepository& repository, std::string_view nameSpace,
                      std::string_view text, KeysGiven given) {
  return PathParser(arena, repository, nameSpace).parse(text, 0, given);
}

const ClassDef& requireClass(const ClassRepository& repository, std::string_view className) {
  if (const ClassDef* found = repository.find(className)) return *found;
  throw ManagerError("unknown class '" + std::string(className) +
                     "': expected one that 'zebcim classes' lists");
}

CMPIData parseScalar(Arena& arena, CMPIType type, std::string_view text, const std::string& what) {
  if (integerRange(type)) return parseIntegerValue(type, text, what);
  CMPIValue value{};
  switch (type) {
    case CMPI_boolean:
      if (!sameName(text, "true") && !sameName(text, "false")) {
        throw ManagerError(what + ": expected TRUE or FALSE, not '" + std::string(text) + "'");
      }
      value.boolean = sameName(text, "true");
      return dataOf(type, value);
    case CMPI_real32:
      return parseReal(type, text, what, &CMPIValue::real32);
    case CMPI_real64:
      return parseReal(type, text, what, &CMPIValue::real64);
    case CMPI_string:
      return dataOf(makeString(arena, text));
    case CMPI_dateTime:
      if (const auto parsed = parseDateTime(text)) return dataOf(makeDateTime(arena, *parsed));
      throw ManagerError(what + ": expected yyyymmddhhmmss.mmmmmm+utc or ddddddddhhmmss.mmmmmm:000, not '" +
                         std::string(text) + "'");
    default:
      throw ManagerError(what + ": a value of type " + typeName(type) + " cannot be given here");
  }
}

}  // namespace ZebManager
