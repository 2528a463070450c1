// The programs that zebcim consists of.
#pragma once

#include <string>
#include <vector>

namespace ZebManager {

/// The folder of zebcim, in each of its programs; in any other program its own.
std::string programFolder();

/// The file of another program of zebcim's. Throws ManagerError when it is not there.
std::string findProgram(const std::string& name);

/// Puts another program of zebcim's in the place of this process. `words`: what the program gets as its
/// arguments, its name first. Returns only by throwing ManagerError: the program is not there or does not
/// start.
[[noreturn]] void become(const std::string& program, const std::vector<std::string>& words);

}  // namespace ZebManager
