#include "values/CallMemory.h"
#include "values/ObjectPathText.h"
#include "values/Values.h"

namespace ZebManager {
namespace {

CMPIObjectPath* clone(const CMPIObjectPath* object, CMPIStatus* status) {
  return cloneHandle<ObjectPath>(object, status, copyPath);
}

template <std::string_view PathBody::*Member>
CMPIStatus setText(const CMPIObjectPath* object, const char* text) {
  ObjectPath* const path = as<ObjectPath>(object);
  if (!path) return statusOf(CMPI_RC_ERR_INVALID_HANDLE);
  writable(*path).*Member = path->arena->copy(text ? text : "");
  return statusOf(CMPI_RC_OK);
}

template <std::string_view PathBody::*Member>
CMPIString* getText(const CMPIObjectPath* object, CMPIStatus* status) {
  const ObjectPath* const path = as<ObjectPath>(object);
  Arena* const arena = currentArena();
  put(status, !path ? CMPI_RC_ERR_INVALID_HANDLE : arena ? CMPI_RC_OK : CMPI_RC_ERR_FAILED);
  return path && arena ? makeString(*arena, path->body().*Member) : nullptr;
}

CMPIStatus addKey(const CMPIObjectPath* object, const char* name, const CMPIValue* value,
                  const CMPIType type) {
  ObjectPath* const path = as<ObjectPath>(object);
  if (!path) return statusOf(CMPI_RC_ERR_INVALID_HANDLE);
  if (!name || !*name) return statusOf(CMPI_RC_ERR_INVALID_PARAMETER);
  CMPIData data{};
  if (const CMPIrc error = takeValue(*path->arena, value, type, data); error != CMPI_RC_OK) {
    return statusOf(error);
  }
  if (isArray(type) || type == CMPI_instance || isNull(data)) return statusOf(CMPI_RC_ERR_INVALID_DATA_TYPE);
  data.state = CMPI_keyValue;
  PathBody& body = writable(*path);
  NamedValue* key = body.keys.find(name);
  if (!key) key = &body.keys.append(*path->arena, path->arena->copy(name));
  key->data = data;
  return statusOf(CMPI_RC_OK);
}

CMPIData getKey(const CMPIObjectPath* object, const char* name, CMPIStatus* status) {
  const ObjectPath* const path = as<ObjectPath>(object);
  if (path) return valueNamed(path->body().keys, name, CMPI_RC_ERR_NOT_FOUND, status);
  put(status, CMPI_RC_ERR_INVALID_HANDLE);
  return nullOf(CMPI_null);
}

CMPIData getKeyAt(const CMPIObjectPath* object, CMPICount index, CMPIString** name, CMPIStatus* status) {
  const ObjectPath* const path = as<ObjectPath>(object);
  if (path) return valueAt(path->body().keys, index, name, status);
  put(status, CMPI_RC_ERR_INVALID_HANDLE);
  return nullOf(CMPI_null);
}

CMPICount getKeyCount(const CMPIObjectPath* object, CMPIStatus* status) {
  const ObjectPath* const path = as<ObjectPath>(object);
  put(status, path ? CMPI_RC_OK : CMPI_RC_ERR_INVALID_HANDLE);
  return path ? path->body().keys.count : 0;
}

CMPIStatus setNameSpaceFromObjectPath(const CMPIObjectPath* object, const CMPIObjectPath* source) {
  const ObjectPath* const from = as<ObjectPath>(source);
  if (!from) return statusOf(CMPI_RC_ERR_INVALID_HANDLE);
  return setText<&PathBody::nameSpace>(object, from->body().nameSpace.data());
}

CMPIStatus setHostAndNameSpaceFromObjectPath(const CMPIObjectPath* object, const CMPIObjectPath* source) {
  const CMPIStatus status = setNameSpaceFromObjectPath(object, source);
  if (status.rc != CMPI_RC_OK) return status;
  return setText<&PathBody::host>(object, as<ObjectPath>(source)->body().host.data());
}

CMPIData noQualifier(CMPIStatus* status) {
  put(status, CMPI_RC_ERR_NOT_SUPPORTED, "qualifiers are not offered");
  return nullOf(CMPI_null);
}

CMPIData getClassQualifier(const CMPIObjectPath*, const char*, CMPIStatus* status) {
  return noQualifier(status);
}

CMPIData getElementQualifier(const CMPIObjectPath*, const char*, const char*, CMPIStatus* status) {
  return noQualifier(status);
}

CMPIData getParameterQualifier(const CMPIObjectPath*, const char*, const char*, const char*,
                               CMPIStatus* status) {
  return noQualifier(status);
}

CMPIString* toString(const CMPIObjectPath* object, CMPIStatus* status) {
  const ObjectPath* const path = as<ObjectPath>(object);
  Arena* const arena = currentArena();
  put(status, !path ? CMPI_RC_ERR_INVALID_HANDLE : arena ? CMPI_RC_OK : CMPI_RC_ERR_FAILED);
  return path && arena ? makeString(*arena, formatPath(path->body())) : nullptr;
}

}  // namespace

const CMPIObjectPathFT kObjectPathFT = {
    CMPIVersion210,
    releaseHandle<ObjectPath>,
    clone,
    setText<&PathBody::nameSpace>,
    getText<&PathBody::nameSpace>,
    setText<&PathBody::host>,
    getText<&PathBody::host>,
    setText<&PathBody::className>,
    getText<&PathBody::className>,
    addKey,
    getKey,
    getKeyAt,
    getKeyCount,
    setNameSpaceFromObjectPath,
    setHostAndNameSpaceFromObjectPath,
    getClassQualifier,
    getElementQualifier,
    getElementQualifier,
    getParameterQualifier,
    toString,
};

}  // namespace ZebManager
