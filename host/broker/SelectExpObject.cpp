// Indication filters, as far as `SELECT * FROM class`: conditions are kept, and refused when they are asked
// for.
#include "broker/CallMemory.h"
#include "broker/SelectQuery.h"
#include "broker/Values.h"

namespace ZebHost {
namespace {

CMPISelectExp* clone(const CMPISelectExp* object, CMPIStatus* status) {
  return cloneHandle<SelectExp>(object, status, [](Arena& arena, const SelectExpBody& body) {
    auto* copy = arena.make<SelectExpBody>(body);
    copy->query = arena.copy(body.query);
    copy->className = arena.copy(body.className);
    return copy;
  });
}

CMPIBoolean evaluate(const CMPISelectExp* object, const CMPIInstance* candidate, CMPIStatus* status) {
  const SelectExp* const filter = as<SelectExp>(object);
  const Instance* const instance = as<Instance>(candidate);
  if (!filter || !instance) {
    put(status, CMPI_RC_ERR_INVALID_HANDLE);
    return 0;
  }
  if (filter->body().hasCondition) {
    put(status, CMPI_RC_ERR_NOT_SUPPORTED, "conditions are not evaluated");
    return 0;
  }
  put(status, CMPI_RC_OK);
  return filter->body().repository->isA(instance->body().classDef->name, filter->body().className);
}

CMPIString* getString(const CMPISelectExp* object, CMPIStatus* status) {
  const SelectExp* const filter = as<SelectExp>(object);
  Arena* const arena = currentArena();
  put(status, !filter ? CMPI_RC_ERR_INVALID_HANDLE : arena ? CMPI_RC_OK : CMPI_RC_ERR_FAILED);
  return filter && arena ? makeString(*arena, filter->body().query) : nullptr;
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

}  // namespace ZebHost
