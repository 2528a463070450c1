#pragma once

#include "cmpicpp/CmpiInstance.h"
#include "common/CmpiManagedInstanceCollection.h"
#include "common/DataStore.h"
#include "common/Logger.h"

namespace ZEB {

/// What a change works on, under the provider's lock.
struct Provided {
  const Logger& logger;
  CmpiManagedInstanceCollection& instances;
  DataStore* store;  ///< of the status filters; null when it could not be opened
};

/// Has the instance of that path take over what it can of `properties`. A class that has nothing to change
/// accepts and ignores it. Throws what the class throws.
void modifyInstance(const Provided& provided, const CmpiCpp::CmpiObjectPath& path,
                    const CmpiCpp::CmpiInstance& instance, CmpiCpp::CmpiPropertyList properties);

}  // namespace ZEB
