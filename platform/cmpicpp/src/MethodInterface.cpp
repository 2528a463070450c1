#include "Trampoline.h"
#include "cmpicpp/CmpiMethodProvider.h"

namespace CmpiCpp {
namespace {

CMPIStatus invokeMethod(CMPIMethodMI* mi, const CMPIContext* context, const CMPIResult* result,
                        const CMPIObjectPath* path, const char* method, const CMPIArgs* in, CMPIArgs* out) {
  CmpiMethodResult found;
  CmpiArgs outArguments;
  return enter<CmpiMethodProvider>(
      mi,
      [&](CmpiMethodProvider& provider) {
        provider.invokeMethod(found, CmpiContext(context), fromBroker(path), optionalName(method),
                              fromBroker(in), outArguments);
      },
      [&](const CMPIBroker* broker) {
        for (const CmpiArgs::Argument& argument : outArguments.arguments()) {
          const CMPIValue value = toBroker(broker, argument.value);
          if (out) out->ft->addArg(out, argument.name.c_str(), &value, argument.value.type());
        }
        if (found.value() && !found.value()->isNull()) {
          const CMPIValue value = toBroker(broker, *found.value());
          result->ft->returnData(result, &value, found.value()->type());
        }
        result->ft->returnDone(result);
      });
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
