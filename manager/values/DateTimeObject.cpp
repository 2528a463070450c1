#include "values/CallMemory.h"
#include "values/DateTimeText.h"
#include "values/Values.h"

namespace ZebManager {
namespace {

CMPIDateTime* clone(const CMPIDateTime* object, CMPIStatus* status) {
  return cloneHandle<DateTime>(
      object, status, [](Arena& arena, const DateTimeBody& body) { return arena.make<DateTimeBody>(body); });
}

CMPIUint64 getBinaryFormat(const CMPIDateTime* object, CMPIStatus* status) {
  const DateTime* const value = as<DateTime>(object);
  put(status, value ? CMPI_RC_OK : CMPI_RC_ERR_INVALID_HANDLE);
  return value ? value->body().microseconds : 0;
}

CMPIString* getStringFormat(const CMPIDateTime* object, CMPIStatus* status) {
  const DateTime* const value = as<DateTime>(object);
  Arena* const arena = currentArena();
  put(status, !value ? CMPI_RC_ERR_INVALID_HANDLE : arena ? CMPI_RC_OK : CMPI_RC_ERR_FAILED);
  return value && arena ? makeString(*arena, formatDateTime(value->body())) : nullptr;
}

CMPIBoolean isInterval(const CMPIDateTime* object, CMPIStatus* status) {
  const DateTime* const value = as<DateTime>(object);
  put(status, value ? CMPI_RC_OK : CMPI_RC_ERR_INVALID_HANDLE);
  return value && value->body().interval;
}

}  // namespace

const CMPIDateTimeFT kDateTimeFT = {CMPIVersion210,  releaseHandle<DateTime>, clone,
                                    getBinaryFormat, getStringFormat,         isInterval};

}  // namespace ZebManager
