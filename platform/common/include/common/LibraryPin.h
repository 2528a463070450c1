#pragma once

namespace ZEB {

/// Keeps this library in the process for good, because some thread is never going to leave its code. Too late
/// while it is being unloaded.
void keepLibraryMapped();

}  // namespace ZEB
