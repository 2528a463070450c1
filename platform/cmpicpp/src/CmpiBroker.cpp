#include "cmpicpp/CmpiBroker.h"

#include "BrokerValues.h"

namespace CmpiCpp {
bool CmpiBroker::classPathIsA(const CmpiObjectPath& path, const CmpiName& className) const {
  if (path.className() == className) return true;
  if (!_broker || !_broker->eft->classPathIsA) return false;
  CMPIStatus status{CMPI_RC_OK, nullptr};
  // The class alone decides; keys would only have to be copied.
  const CMPIObjectPath* classPath =
      _broker->eft->newObjectPath(_broker, path.nameSpace().c_str(), path.className().c_str(), &status);
  if (!classPath || status.rc != CMPI_RC_OK) return false;
  const CMPIBoolean isA = _broker->eft->classPathIsA(_broker, classPath, className.c_str(), &status);
  return status.rc == CMPI_RC_OK && isA != 0;
}

CMPIContext* CmpiBroker::prepareAttachThread() const {
  if (!_broker || !_broker->bft->prepareAttachThread || !_factoryContext) return nullptr;
  return _broker->bft->prepareAttachThread(_broker, _factoryContext);
}

}  // namespace CmpiCpp
