#include "Trampoline.h"

namespace CmpiCpp {
namespace {

void throwIfFailed(const CMPIStatus& status) {
  if (status.rc != CMPI_RC_OK) throw CmpiStatus(status.rc, fromBroker(status.msg));
}

template <class Value, class Return>
void deliverAll(const CMPIBroker* broker, const CMPIResult* result, const std::vector<Value>& values,
                Return CMPIResultFT::*give) {
  for (const Value& value : values) throwIfFailed((result->ft->*give)(result, toBroker(broker, value)));
  throwIfFailed(result->ft->returnDone(result));
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
  deliverAll(broker, result, paths, &CMPIResultFT::returnObjectPath);
}

void deliver(const CMPIBroker* broker, const CMPIResult* result, const std::vector<CmpiInstance>& instances) {
  deliverAll(broker, result, instances, &CMPIResultFT::returnInstance);
}

}  // namespace CmpiCpp
