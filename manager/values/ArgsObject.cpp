// Arguments and contexts: both are lists of named values.
#include "values/Values.h"

namespace ZebManager {
namespace {

template <class H>
typename H::Face* clone(const typename H::Face* object, CMPIStatus* status) {
  return cloneHandle<H>(object, status, copyValues);
}

template <class H>
CMPIStatus add(const typename H::Face* object, const char* name, const CMPIValue* value,
               const CMPIType type) {
  H* const list = as<H>(object);
  if (!list) return statusOf(CMPI_RC_ERR_INVALID_HANDLE);
  if (!name || !*name) return statusOf(CMPI_RC_ERR_INVALID_PARAMETER);
  CMPIData data{};
  if (const CMPIrc error = takeValue(*list->arena, value, type, data); error != CMPI_RC_OK) {
    return statusOf(error);
  }
  NamedValues& values = list->body().values;
  NamedValue* entry = values.find(name);
  if (!entry) entry = &values.append(*list->arena, list->arena->copy(name));
  entry->data = data;
  return statusOf(CMPI_RC_OK);
}

template <class H>
CMPIData get(const typename H::Face* object, const char* name, CMPIStatus* status) {
  const H* const list = as<H>(object);
  if (list) return valueNamed(list->body().values, name, CMPI_RC_ERR_NOT_FOUND, status);
  put(status, CMPI_RC_ERR_INVALID_HANDLE);
  return nullOf(CMPI_null);
}

template <class H>
CMPIData getAt(const typename H::Face* object, CMPICount index, CMPIString** name, CMPIStatus* status) {
  const H* const list = as<H>(object);
  if (list) return valueAt(list->body().values, index, name, status);
  put(status, CMPI_RC_ERR_INVALID_HANDLE);
  return nullOf(CMPI_null);
}

template <class H>
CMPICount getCount(const typename H::Face* object, CMPIStatus* status) {
  const H* const list = as<H>(object);
  put(status, list ? CMPI_RC_OK : CMPI_RC_ERR_INVALID_HANDLE);
  return list ? list->body().values.count : 0;
}

}  // namespace

const CMPIArgsFT kArgsFT = {CMPIVersion210, releaseHandle<Args>, clone<Args>,   add<Args>,
                            get<Args>,      getAt<Args>,         getCount<Args>};

const CMPIContextFT kContextFT = {CMPIVersion210, releaseHandle<Context>, clone<Context>, get<Context>,
                                  getAt<Context>, getCount<Context>,      add<Context>};

}  // namespace ZebManager
