#include "indications/StoredInstance.h"

#include <array>

#include "values/ObjectPathText.h"
#include "values/Values.h"

namespace ZebManager {
namespace {

constexpr int kDeepestReference = 4;

std::string_view withoutSlashes(std::string_view nameSpace) {
  while (nameSpace.starts_with('/')) nameSpace.remove_prefix(1);
  while (nameSpace.ends_with('/')) nameSpace.remove_suffix(1);
  return nameSpace;
}

std::string_view lastPart(std::string_view nameSpace) {
  nameSpace = withoutSlashes(nameSpace);
  return nameSpace.substr(nameSpace.rfind('/') + 1);
}

std::string inQuotes(std::string_view name) {
  return "'" + std::string(name) + "'";
}

}  // namespace

bool sameNameSpace(std::string_view a, std::string_view b) {
  return sameName(withoutSlashes(a), withoutSlashes(b));
}

StoredInstance::StoredInstance(const ClassDef& classDef, std::string_view nameSpace)
    : instance(makeInstance(arena, *makePath(arena, nameSpace, classDef.name), classDef)) {}

StoredInstance::StoredInstance(const StoredInstance& other)
    : instance(makeHandle<Instance>(arena, copyInstance(arena, other.instance->body()))),
      fixed(other.fixed) {}

const CMPIData* StoredInstance::value(std::string_view property) const {
  const NamedValue* const found = instance->body().properties.find(property);
  return found && !isNull(found->data) ? &found->data : nullptr;
}

std::string StoredInstance::text(std::string_view property) const {
  const CMPIData* const data = value(property);
  return data && data->type == CMPI_string ? std::string(textOf(data->value.string)) : std::string();
}

std::optional<std::uint64_t> StoredInstance::number(std::string_view property) const {
  const CMPIData* const data = value(property);
  return data && integerRange(data->type) ? std::optional(unsignedOf(*data)) : std::nullopt;
}

std::string StoredInstance::endAt(const std::string& property) const {
  const auto found = ends.find(property);
  return found == ends.end() ? std::string() : found->second;
}

void StoredInstance::set(const std::string& property, const CMPIData& data) {
  const CMPIValue* const passed = isNull(data) ? nullptr : &data.value;
  const CMPIrc code = instance->ft->setProperty(instance, property.c_str(), passed, data.type).rc;
  if (code == CMPI_RC_OK) return;
  if (code == CMPI_RC_ERR_NO_SUCH_PROPERTY)
    throw Refusal(code, classDef().name + " has no property " + inQuotes(property));
  throw Refusal(CMPI_RC_ERR_TYPE_MISMATCH, inQuotes(property) + " is not of the type " + typeName(data.type));
}

void StoredInstance::setText(const std::string& property, std::string_view text) {
  set(property, dataOf(makeString(arena, text)));
}

void StoredInstance::completePath() {
  ObjectPath* const path = makePath(arena, instance->body().path->nameSpace, classDef().name);
  for (const PropertyDef* key : classDef().keys()) {
    const CMPIData* const data = value(key->name);
    if (!data) throw Refusal(CMPI_RC_ERR_INVALID_PARAMETER, "the key " + inQuotes(key->name) + " is missing");
    path->ft->addKey(path, key->name.c_str(), &data->value, data->type);
  }
  instance->ft->setObjectPath(instance, path);
}

std::string InstanceNames::defaultOf(std::string_view key, const ClassDef& classDef) const {
  if (sameName(key, "SystemCreationClassName")) return kSystemClass;
  if (sameName(key, "SystemName")) return _systemName;
  if (sameName(key, "CreationClassName")) return classDef.name;
  return {};
}

// Clients differ in what they take for the host in a reference that is written as text: of "root/interop" the
// last part is left, or a host stands before it. The classes are of this namespace alone, so the last part
// tells.
bool InstanceNames::isOwn(const PathBody& path) const {
  return path.nameSpace.empty() || sameName(lastPart(path.nameSpace), lastPart(_nameSpace));
}

std::string InstanceNames::nameOf(const PathBody& path) const {
  return nameOf(path, 0);
}

std::string InstanceNames::nameOf(const CMPIData& reference) const {
  return nameOf(as<ObjectPath>(reference.value.ref)->body(), 1);
}

std::string InstanceNames::nameOf(const PathBody& path, int depth) const {
  const bool reference = depth > 0;
  if (depth > kDeepestReference)
    throw Refusal(CMPI_RC_ERR_INVALID_PARAMETER, "references are nested too deep");
  const ClassDef* const classDef = _repository.find(path.className);
  if (!classDef) {
    throw Refusal(reference ? CMPI_RC_ERR_INVALID_PARAMETER : CMPI_RC_ERR_INVALID_CLASS,
                  "unknown class " + inQuotes(path.className));
  }
  if (!isOwn(path)) {
    throw Refusal(CMPI_RC_ERR_INVALID_PARAMETER, inQuotes(path.className) + " is looked for in " +
                                                     std::string(path.nameSpace) + ": expected " +
                                                     _nameSpace);
  }
  for (const NamedValue& given : path.keys) {
    const PropertyDef* const key = classDef->property(given.name);
    if (!key || !key->key) {
      throw Refusal(CMPI_RC_ERR_INVALID_PARAMETER, inQuotes(given.name) + " is no key of " + classDef->name);
    }
  }
  std::string name = classDef->name;
  char separator = '.';
  for (const PropertyDef* key : classDef->keys()) {
    const NamedValue* const given = path.keys.find(key->name);
    std::string value;
    if (given && given->data.type == CMPI_ref) {
      value = "(" + nameOf(as<ObjectPath>(given->data.value.ref)->body(), depth + 1) + ")";
    } else if (given) {
      value = formatKeyValue(given->data);
    } else if (const std::string otherwise = defaultOf(key->name, *classDef); !otherwise.empty()) {
      value = "\"" + otherwise + "\"";
    } else {
      throw Refusal(CMPI_RC_ERR_INVALID_PARAMETER,
                    "the key " + inQuotes(key->name) + " of " + classDef->name + " is missing");
    }
    name += separator + key->name + "=" + value;
    separator = ',';
  }
  return name;
}

}  // namespace ZebManager
