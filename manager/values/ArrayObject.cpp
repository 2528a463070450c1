#include "values/Values.h"

namespace ZebManager {
namespace {

CMPIArray* clone(const CMPIArray* object, CMPIStatus* status) {
  return cloneHandle<Array>(object, status, copyArray);
}

CMPICount getSize(const CMPIArray* object, CMPIStatus* status) {
  const Array* const array = as<Array>(object);
  put(status, array ? CMPI_RC_OK : CMPI_RC_ERR_INVALID_HANDLE);
  return array ? array->body().count : 0;
}

CMPIType getSimpleType(const CMPIArray* object, CMPIStatus* status) {
  const Array* const array = as<Array>(object);
  put(status, array ? CMPI_RC_OK : CMPI_RC_ERR_INVALID_HANDLE);
  return array ? array->body().elementType : CMPI_null;
}

CMPIData getElementAt(const CMPIArray* object, CMPICount index, CMPIStatus* status) {
  const Array* const array = as<Array>(object);
  const bool there = array && index < array->body().count;
  put(status, there ? CMPI_RC_OK : array ? CMPI_RC_ERR_NO_SUCH_PROPERTY : CMPI_RC_ERR_INVALID_HANDLE);
  return there ? array->body().elements[index] : CMPIData{CMPI_null, CMPI_notFound, {}};
}

CMPIStatus setElementAt(const CMPIArray* object, CMPICount index, const CMPIValue* value, CMPIType type) {
  Array* const array = as<Array>(object);
  if (!array) return statusOf(CMPI_RC_ERR_INVALID_HANDLE);
  if (index >= array->body().count) return statusOf(CMPI_RC_ERR_NO_SUCH_PROPERTY);
  CMPIData data{};
  if (const CMPIrc error = takeValue(*array->arena, value, type, data); error != CMPI_RC_OK) {
    return statusOf(error);
  }
  if (data.type != array->body().elementType && type != CMPI_null) {
    return statusOf(CMPI_RC_ERR_INVALID_DATA_TYPE);
  }
  data.type = array->body().elementType;
  writable(*array).elements[index] = data;
  return statusOf(CMPI_RC_OK);
}

}  // namespace

const CMPIArrayFT kArrayFT = {CMPIVersion210, releaseHandle<Array>, clone,       getSize,
                              getSimpleType,  getElementAt,         setElementAt};

}  // namespace ZebManager
