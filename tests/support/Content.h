#pragma once

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace ZEB::test {

/// All that a file holds; empty when it is not there, or goes while it is read, as those of a process in
/// /proc do.
inline std::string contentOf(const std::filesystem::path& file) {
  std::ostringstream content;
  content << std::ifstream(file, std::ios::binary).rdbuf();
  return content.str();
}

}  // namespace ZEB::test
