#include "Trampoline.h"

namespace CmpiCpp {
namespace {

/// Set by an object manager whose memory may be taken back between two instances.
constexpr char kTakenAtOnceEntry[] = "ZEBTakenAtOnce";

void throwIfFailed(const CMPIStatus& status) {
  if (status.rc != CMPI_RC_OK) throw CmpiStatus(status.rc, fromBroker(status.msg));
}

}  // namespace

CMPIStatus makeStatus(const CmpiBroker& broker, CMPIrc rc, const std::string& message) {
  CMPIStatus status{rc, nullptr};
  if (broker && !message.empty()) {
    CMPIStatus made{CMPI_RC_OK, nullptr};
    status.msg = broker.get()->eft->newString(broker.get(), message.c_str(), &made);
  }
  return status;
}

void deliver(const CMPIBroker* broker, const CMPIResult* result, const std::vector<CmpiObjectPath>& paths) {
  for (const CmpiObjectPath& path : paths) {
    throwIfFailed(result->ft->returnObjectPath(result, toBroker(broker, path)));
  }
  throwIfFailed(result->ft->returnDone(result));
}

void deliver(const CMPIBroker* broker, const CMPIResult* result, std::vector<CmpiInstance> instances,
             CmpiPropertyList properties, const CmpiContext& context) {
  const bool takenAtOnce = context.getNumber(kTakenAtOnceEntry).has_value();
  InstanceMaker maker(broker, properties);
  for (CmpiInstance& instance : instances) {
    CMPIGcStat* const mark = takenAtOnce ? broker->mft->mark(broker, nullptr) : nullptr;
    throwIfFailed(result->ft->returnInstance(result, maker.make(instance)));
    if (mark) broker->mft->release(broker, mark);
    instance = {};
  }
  throwIfFailed(result->ft->returnDone(result));
}

}  // namespace CmpiCpp
