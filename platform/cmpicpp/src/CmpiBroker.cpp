#include "cmpicpp/CmpiBroker.h"

#include "BrokerValues.h"

namespace CmpiCpp {
namespace {

/// The memory table, where the broker is of a version that has one.
const CMPIBrokerMemFT* memoryTable(const CMPIBroker* broker) {
  // Brokers of version 0 exist that have the table, and brokers of version 200 that do not: the pointer
  // decides.
  if (!broker || !broker->mft || !broker->mft->mark || !broker->mft->release) return nullptr;
  return broker->mft;
}

}  // namespace

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

ThreadAttachment::ThreadAttachment(const CmpiBroker& broker, CMPIContext* prepared)
    : _broker(broker), _context(prepared) {
  if (!_broker || !prepared || !_broker.get()->bft->attachThread) return;
  _attached = _broker.get()->bft->attachThread(_broker.get(), prepared).rc == CMPI_RC_OK;
}

ThreadAttachment::~ThreadAttachment() {
  if (_attached && _broker.get()->bft->detachThread)
    _broker.get()->bft->detachThread(_broker.get(), _context);
}

BrokerMemoryMark::BrokerMemoryMark(const CmpiBroker& broker) : _broker(broker) {
  CMPIStatus status{CMPI_RC_OK, nullptr};
  if (const auto* memory = memoryTable(_broker.get())) _mark = memory->mark(_broker.get(), &status);
}

BrokerMemoryMark::~BrokerMemoryMark() {
  if (_mark) memoryTable(_broker.get())->release(_broker.get(), _mark);
}

}  // namespace CmpiCpp
