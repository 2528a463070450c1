#pragma once

#include "common/CmpiManagedInstanceCollection.h"

namespace ZEB {

/// Notes for the process that takes over what every port and team has reported. The caller holds the lock of
/// the instances, or nobody can call yet; here and below.
void noteReports(CmpiManagedInstanceCollection& instances);

/// Has ports and teams begin with what the process before has reported.
void resumeReports(CmpiManagedInstanceCollection& instances);

}  // namespace ZEB
