#pragma once

#include <string>

#include "snapshot/HostSnapshot.h"

namespace ZEB::ethernet {

/// A snapshot as the text of a file, indented, ending in a newline.
std::string writeSnapshot(HostSnapshot snapshot);

}  // namespace ZEB::ethernet
