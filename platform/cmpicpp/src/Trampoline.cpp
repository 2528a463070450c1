#include "Trampoline.h"

namespace CmpiCpp {
namespace {

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
             CmpiPropertyList properties) {
  InstanceMaker maker(broker, properties);
  for (CmpiInstance& instance : instances) {
    throwIfFailed(result->ft->returnInstance(result, maker.make(instance)));
    instance = {};
  }
  throwIfFailed(result->ft->returnDone(result));
}

}  // namespace CmpiCpp
