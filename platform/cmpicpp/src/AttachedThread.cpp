#include "cmpicpp/AttachedThread.h"

namespace CmpiCpp {
namespace {

/// The memory table, where the broker has one. Brokers of version 0 exist that have it, and brokers of
/// version 200 that do not: the pointer decides.
const CMPIBrokerMemFT* memoryTable(const CMPIBroker* broker) {
  return broker->mft && broker->mft->mark && broker->mft->release ? broker->mft : nullptr;
}

}  // namespace

AttachedThread::AttachedThread(const CmpiBroker& broker, CMPIContext* prepared)
    : _broker(broker.get()), _context(prepared) {
  attach();
}

// A context that is not attached with is given back all the same: only a detachment frees it.
AttachedThread::~AttachedThread() {
  if (attach()) detach();
}

bool AttachedThread::attach() {
  if (!_attached && _broker && _context && _broker->bft->attachThread) {
    _attached = _broker->bft->attachThread(_broker, _context).rc == CMPI_RC_OK;
  }
  return _attached;
}

void AttachedThread::detach() {
  if (_broker->bft->detachThread) _broker->bft->detachThread(_broker, _context);
  _attached = false;
}

bool AttachedThread::run(const std::function<void(const CmpiContext&)>& work) {
  if (!attach()) return false;
  if (const CMPIBrokerMemFT* memory = memoryTable(_broker)) {
    CMPIStatus status{CMPI_RC_OK, nullptr};
    const CMPIGcStat* mark = memory->mark(_broker, &status);
    work(CmpiContext(_context));
    if (mark) memory->release(_broker, mark);
    return true;
  }
  work(CmpiContext(_context));
  // Without another context the thread stays attached: better that memory grows than that no work is done.
  if (CMPIContext* next = _broker->bft->prepareAttachThread(_broker, _context)) {
    detach();
    _context = next;
  }
  return true;
}

}  // namespace CmpiCpp
