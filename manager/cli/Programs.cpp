#include "cli/Programs.h"

#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>

#include "values/ManagerError.h"

namespace ZebManager {
namespace {

namespace fs = std::filesystem;

bool isProgram(const fs::path& file) {
  std::error_code ignored;
  return fs::is_regular_file(file, ignored);
}

}  // namespace

std::string findProgram(const std::string& name) {
  const fs::path beside(programFolder());
  const std::array<fs::path, 3> folders = {beside, beside / "../libexec/zeb",
                                           beside / "../platform/ethernet"};
  for (const auto& folder : folders) {
    const auto file = (folder / name).lexically_normal();
    if (isProgram(file)) return file.string();
  }
  throw ManagerError("cannot find " + name + ": expected it in " + beside.string());
}

std::string programFolder() {
  std::error_code error;
  const fs::path own = fs::read_symlink("/proc/self/exe", error).parent_path();
  const fs::path fromLibexec = (own / "../../bin").lexically_normal();
  return (!isProgram(own / "zebcim") && isProgram(fromLibexec / "zebcim") ? fromLibexec : own).string();
}

void become(const std::string& program, const std::vector<std::string>& words) {
  const std::string file = findProgram(program);
  std::vector<char*> pointers;
  pointers.reserve(words.size() + 1);
  for (const std::string& word : words) pointers.push_back(const_cast<char*>(word.c_str()));
  pointers.push_back(nullptr);
  execv(file.c_str(), pointers.data());
  throw ManagerError("cannot start '" + file + "': " + std::strerror(errno));
}

}  // namespace ZebManager
