// The page in a browser, as resources.
#pragma once

#include "page/LiveModel.h"
#include "server/Resources.h"

namespace ZebManager {

/// Its files, its events, and the instances that it shows. Both have to outlive the resources and be safe
/// from several threads.
void addPage(Resources& resources, LiveModel& live, Namespace& model);

}  // namespace ZebManager
