#include "values/CallMemory.h"
#include "values/Values.h"

namespace ZebManager {
namespace {

CMPIInstance* clone(const CMPIInstance* object, CMPIStatus* status) {
  return cloneHandle<Instance>(object, status, copyInstance);
}

CMPIData getProperty(const CMPIInstance* object, const char* name, CMPIStatus* status) {
  const Instance* const instance = as<Instance>(object);
  if (instance) return valueNamed(instance->body().properties, name, CMPI_RC_ERR_NO_SUCH_PROPERTY, status);
  put(status, CMPI_RC_ERR_INVALID_HANDLE);
  return nullOf(CMPI_null);
}

CMPIData getPropertyAt(const CMPIInstance* object, CMPICount index, CMPIString** name, CMPIStatus* status) {
  const Instance* const instance = as<Instance>(object);
  if (instance) return valueAt(instance->body().properties, index, name, status);
  put(status, CMPI_RC_ERR_INVALID_HANDLE);
  return nullOf(CMPI_null);
}

CMPICount getPropertyCount(const CMPIInstance* object, CMPIStatus* status) {
  const Instance* const instance = as<Instance>(object);
  put(status, instance ? CMPI_RC_OK : CMPI_RC_ERR_INVALID_HANDLE);
  return instance ? instance->body().properties.count : 0;
}

bool isFilteredOut(const InstanceBody& body, const PropertyDef& property) {
  if (!body.filter || property.key) return false;
  const char first = foldCase(property.name.front());
  for (const char* const* wanted = body.filter; *wanted; ++wanted) {
    // Nearly all differ in their first letter.
    if (foldCase(**wanted) == first && sameName(*wanted, property.name)) return false;
  }
  return true;
}

/// Keeps the spelling that the provider uses; the schema's text serves when it is the same.
std::string_view nameToKeep(Arena& arena, std::string_view name, const PropertyDef& property) {
  return property.name == name ? std::string_view(property.name) : arena.copy(name);
}

CMPIStatus refuse(const InstanceBody& body, CMPIrc code, const std::string& why) {
  if (body.refusals) body.refusals->note(why);
  return statusOf(code, why);
}

CMPIStatus setProperty(const CMPIInstance* object, const char* name, const CMPIValue* value, CMPIType type) {
  Instance* const instance = as<Instance>(object);
  if (!instance) return statusOf(CMPI_RC_ERR_INVALID_HANDLE);
  if (!name) return statusOf(CMPI_RC_ERR_INVALID_PARAMETER);
  const ClassDef& classDef = *instance->body().classDef;
  const std::string_view given(name);
  const auto known = classDef.propertyIndex.find(given);
  if (known == classDef.propertyIndex.end()) {
    return refuse(instance->body(), CMPI_RC_ERR_NO_SUCH_PROPERTY, classDef.name + " has no property " + name);
  }
  const PropertyDef& property = classDef.properties[known->second];
  CMPIData data{};
  if (const CMPIrc error = takeValue(*instance->arena, value, type, data); error != CMPI_RC_OK) {
    return statusOf(error);
  }
  if (data.type != property.type && !(type == CMPI_null && isNull(data))) {
    return refuse(instance->body(), CMPI_RC_ERR_INVALID_DATA_TYPE,
                  classDef.name + "." + property.name + " is " + typeName(property.type) + ", not " +
                      typeName(data.type));
  }
  data.type = property.type;
  if (isFilteredOut(instance->body(), property)) return statusOf(CMPI_RC_OK);
  InstanceBody& body = writable(*instance);
  std::uint16_t& position = body.positions[known->second];
  if (position == 0) {
    body.properties.append(*instance->arena, nameToKeep(*instance->arena, given, property));
    position = static_cast<std::uint16_t>(body.properties.count);
  }
  body.properties.items[position - 1].data = data;
  return statusOf(CMPI_RC_OK);
}

CMPIStatus setPropertyWithOrigin(const CMPIInstance* object, const char* name, const CMPIValue* value,
                                 const CMPIType type, const char*) {
  return setProperty(object, name, value, type);
}

CMPIObjectPath* getObjectPath(const CMPIInstance* object, CMPIStatus* status) {
  const Instance* const instance = as<Instance>(object);
  Arena* const arena = currentArena();
  put(status, !instance ? CMPI_RC_ERR_INVALID_HANDLE : arena ? CMPI_RC_OK : CMPI_RC_ERR_FAILED);
  if (!instance || !arena) return nullptr;
  PathBody* const path = instance->body().path;
  return makeHandle<ObjectPath>(*arena, instance->arena == arena ? path : copyPath(*arena, *path));
}

CMPIStatus setObjectPath(const CMPIInstance* object, const CMPIObjectPath* source) {
  Instance* const instance = as<Instance>(object);
  const ObjectPath* const path = as<ObjectPath>(source);
  if (!instance || !path) return statusOf(CMPI_RC_ERR_INVALID_HANDLE);
  if (!sameName(path->body().className, instance->body().classDef->name)) {
    return statusOf(CMPI_RC_ERR_INVALID_PARAMETER, "the path is of another class");
  }
  PathBody* const copy = copyPath(*instance->arena, path->body());
  copy->shared = true;
  writable(*instance).path = copy;
  return statusOf(CMPI_RC_OK);
}

CMPIStatus setPropertyFilter(const CMPIInstance* object, const char** names, const char**) {
  Instance* const instance = as<Instance>(object);
  if (!instance) return statusOf(CMPI_RC_ERR_INVALID_HANDLE);
  if (!names) {
    writable(*instance).filter = nullptr;
    return statusOf(CMPI_RC_OK);
  }
  std::size_t count = 0;
  while (names[count]) ++count;
  auto* const kept = instance->arena->makeArray<const char*>(count + 1);
  for (std::size_t i = 0; i < count; ++i) kept[i] = instance->arena->copy(names[i]).data();
  writable(*instance).filter = kept;
  return statusOf(CMPI_RC_OK);
}

}  // namespace

const CMPIInstanceFT kInstanceFT = {
    CMPIVersion210, releaseHandle<Instance>, clone,
    getProperty,    getPropertyAt,           getPropertyCount,
    setProperty,    getObjectPath,           setPropertyFilter,
    setObjectPath,  setPropertyWithOrigin,
};

}  // namespace ZebManager
