#include "common/AutoMutex.h"
#include "provider/ZEBEthernetPortProvider.h"

namespace ZEB {

// Changes of a class that has nothing to change are accepted and ignored.
void ZEBEthernetPortProvider::modifyInstance(const CmpiCpp::CmpiContext& /*context*/,
                                             const CmpiCpp::CmpiObjectPath& /*path*/,
                                             const CmpiCpp::CmpiInstance& /*instance*/,
                                             CmpiCpp::CmpiPropertyList /*properties*/) {
  _logger.info("modifyInstance()");
  const AutoMutex lock(_collectionMutex);
}

}  // namespace ZEB
