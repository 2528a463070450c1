// Indication filters. Instances are held against their conditions here; the conditions themselves stay
// inside.
#include "broker/SelectQuery.h"
#include "query/Condition.h"
#include "values/CallMemory.h"
#include "values/Values.h"

namespace ZebManager {
namespace {

CMPISelectExp* clone(const CMPISelectExp* object, CMPIStatus* status) {
  return cloneHandle<SelectExp>(object, status, [](Arena& arena, const SelectExpBody& body) {
    return makeSelectExpBody(arena, *body.repository, body.text);
  });
}

CMPIBoolean evaluate(const CMPISelectExp* object, const CMPIInstance* candidate, CMPIStatus* status) {
  const SelectExp* const filter = as<SelectExp>(object);
  const Instance* const instance = as<Instance>(candidate);
  if (!filter || !instance) {
    put(status, CMPI_RC_ERR_INVALID_HANDLE);
    return 0;
  }
  put(status, CMPI_RC_OK);
  return matches(*filter->body().query, *instance, *filter->body().repository);
}

CMPIString* getString(const CMPISelectExp* object, CMPIStatus* status) {
  const SelectExp* const filter = as<SelectExp>(object);
  Arena* const arena = currentArena();
  put(status, !filter ? CMPI_RC_ERR_INVALID_HANDLE : arena ? CMPI_RC_OK : CMPI_RC_ERR_FAILED);
  return filter && arena ? makeString(*arena, filter->body().text) : nullptr;
}

CMPISelectCond* noCondition(const CMPISelectExp*, CMPIStatus* status) {
  put(status, CMPI_RC_ERR_NOT_SUPPORTED, "filters are not offered in normal form");
  return nullptr;
}

CMPIBoolean evaluateUsingAccessor(const CMPISelectExp*, CMPIAccessor*, void*, CMPIStatus* status) {
  put(status, CMPI_RC_ERR_NOT_SUPPORTED, "filters are evaluated on instances only");
  return 0;
}

}  // namespace

const CMPISelectExpFT kSelectExpFT = {
    CMPIVersion210, releaseHandle<SelectExp>, clone, evaluate, getString, noCondition,
    noCondition,    evaluateUsingAccessor};

}  // namespace ZebManager
