// The server's configuration as a file.
#pragma once

#include <toml++/toml.h>

#include <string>

namespace ZebManager {

/// What the file says. Throws ManagerError, with file and line, for what cannot be read, is no TOML, or is
/// longer than any configuration; a file that is not there counts as one that says nothing when it `mayLack`.
toml::table readConfiguration(const std::string& file, bool mayLack);

}  // namespace ZebManager
