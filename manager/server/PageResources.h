// The page in a browser, as resources.
#pragma once

#include "page/LiveModel.h"
#include "server/Explanations.h"
#include "server/Resources.h"

namespace ZebManager {

/// Its files, its events, the instances that it shows, and why they are as they are. All have to outlive the
/// resources and be safe from several threads.
void addPage(Resources& resources, LiveModel& live, Namespace& model, Explanations& explanations);

}  // namespace ZebManager
