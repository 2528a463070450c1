#include "cmpicpp/CmpiMBService.h"

#include "BrokerValues.h"
#include "cmpicpp/CmpiStatus.h"

namespace CmpiCpp {

void CmpiMBService::deliverIndication(const CmpiContext& context, std::string_view nameSpace,
                                      const CmpiInstance& indication) {
  const CMPIBroker* broker = _broker.get();
  if (!broker || !broker->bft->deliverIndication) {
    throw CmpiStatus(CMPI_RC_ERR_NOT_SUPPORTED, "the object manager takes no indications");
  }
  const CMPIInstance* made = toBroker(broker, indication);
  const CMPIStatus status =
      broker->bft->deliverIndication(broker, context.get(), std::string(nameSpace).c_str(), made);
  if (status.rc != CMPI_RC_OK) throw CmpiStatus(status.rc, fromBroker(status.msg));
}

}  // namespace CmpiCpp
