#include "common/CmpiManagedInstance.h"

#include "cmpicpp/CmpiStatus.h"
#include "common/CmpiManagedInstanceAssociation.h"

namespace ZEB {

CmpiCpp::CmpiInstance CmpiManagedInstance::makeInstanceOf(CmpiCpp::CmpiPropertyList wanted) {
  CmpiCpp::CmpiInstance instance = makeInstance();
  instance.keepOnly(wanted);
  return instance;
}

void CmpiManagedInstance::invokeMethod(const CmpiCpp::CmpiName& method, const CmpiCpp::CmpiArgs& /*in*/,
                                       CmpiCpp::CmpiMethodResult& /*result*/) {
  throw CmpiCpp::CmpiStatus(CMPI_RC_ERR_METHOD_NOT_FOUND, "no method " + method.str());
}

CmpiCpp::CmpiObjectPath CmpiManagedInstanceAssociation::otherEnd(const CmpiCpp::CmpiObjectPath& path) const {
  if (path == _secondEnd) return _firstEnd;
  if (path == _firstEnd) return _secondEnd;
  return {};
}

}  // namespace ZEB
