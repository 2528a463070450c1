#include "cli/Capture.h"

#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>

#include "broker/HostError.h"

namespace ZebHost {
namespace {

constexpr char kTool[] = "zeb-capture";

/// Beside zebcim as it is installed, else where the build leaves it.
std::string findTool(const std::filesystem::path& beside) {
  const std::array<std::filesystem::path, 3> folders = {beside, beside / "../libexec/zeb",
                                                        beside / "../platform/ethernet"};
  std::error_code ignored;
  for (const auto& folder : folders) {
    const auto file = (folder / kTool).lexically_normal();
    if (std::filesystem::is_regular_file(file, ignored)) return file.string();
  }
  throw HostError(std::string("cannot find ") + kTool + ": expected it in " + beside.string());
}

}  // namespace

void capture(const Options& options, const std::string& executableFolder) {
  const std::string tool = findTool(executableFolder);
  std::array<const char*, 4> words = {kTool, options.path.c_str()};
  if (options.anonymize) words = {kTool, "--anonymize", options.path.c_str()};
  execv(tool.c_str(), const_cast<char* const*>(words.data()));
  throw HostError("cannot start '" + tool + "': " + std::strerror(errno));
}

}  // namespace ZebHost
