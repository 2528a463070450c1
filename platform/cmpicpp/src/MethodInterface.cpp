#include "Trampoline.h"
#include "cmpicpp/CmpiMethodProvider.h"

namespace CmpiCpp {
namespace {

/// What a method gave.
struct Outcome {
  CmpiMethodResult result;
  CmpiArgs arguments;
};

void deliver(const CMPIBroker* broker, const CMPIResult* result, CMPIArgs* out, const Outcome& found) {
  for (const CmpiArgs::Argument& argument : found.arguments.arguments()) {
    const CMPIValue value = toBroker(broker, argument.value);
    if (out) out->ft->addArg(out, argument.name.c_str(), &value, argument.value.type());
  }
  const auto& returned = found.result.value();
  if (returned && !returned->isNull()) {
    const CMPIValue value = toBroker(broker, *returned);
    result->ft->returnData(result, &value, returned->type());
  }
  result->ft->returnDone(result);
}

CMPIStatus invokeMethod(CMPIMethodMI* mi, const CMPIContext* context, const CMPIResult* result,
                        const CMPIObjectPath* path, const char* method, const CMPIArgs* in, CMPIArgs* out) {
  return enter<CmpiMethodProvider, Outcome>(
      mi,
      [&](CmpiMethodProvider& provider, Outcome& found) {
        provider.invokeMethod(found.result, CmpiContext(context), fromBroker(path), optionalName(method),
                              fromBroker(in), found.arguments);
      },
      [&](const CMPIBroker* broker, const Outcome& found) { deliver(broker, result, out, found); });
}

}  // namespace

const CMPIMethodMIFT kMethodTable = {CMPIVersion100, CMPIVersion100, "method", cleanupInterface<CMPIMethodMI>,
                                     invokeMethod};

CMPIMethodMI* CmpiMethodProvider::getMethodMI() const {
  return interfaces() ? interfaces()->methodMI() : nullptr;
}

void CmpiMethodProvider::invokeMethod(CmpiMethodResult&, const CmpiContext&, const CmpiObjectPath&,
                                      const CmpiName&, const CmpiArgs&, CmpiArgs&) {
  throw CmpiStatus(CMPI_RC_ERR_NOT_SUPPORTED);
}

}  // namespace CmpiCpp
