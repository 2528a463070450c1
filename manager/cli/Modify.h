// Changing instances.
#pragma once

#include "cli/Commands.h"

namespace ZebManager {

/// Changes the properties that the options name, and looks again whether they were kept: by the service, or
/// by a plug-in that is loaded anew. Throws ManagerError for what the schema does not let anybody write and
/// for what was not kept.
void modify(const Options& options, Session& session, const Output& output);

}  // namespace ZebManager
