#pragma once

#include <string>

namespace ZEB {

/// Puts a file with that text into the configured run directory, which is made when it is not there, whole or
/// not at all: a reader finds the old file or the new one. One call at a time for one name. Throws
/// `std::system_error`.
void replaceRunFile(const std::string& name, const std::string& text);

/// Takes the file away again, if it is there.
void removeRunFile(const std::string& name);

}  // namespace ZEB
