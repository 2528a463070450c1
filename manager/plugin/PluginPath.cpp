#include <array>
#include <cstdlib>
#include <filesystem>

#include "plugin/PluginLibrary.h"

namespace ZebManager {
namespace {

constexpr char kFileName[] = "libZEBEthernetPortProvider.so";

}  // namespace

std::string findPlugin(const std::string& option, const std::string& executableFolder) {
  if (!option.empty()) return option;
  const char* const named = std::getenv("ZEB_PLUGIN");
  if (named && *named) return named;
  const std::filesystem::path beside(executableFolder);
  const std::array<std::filesystem::path, 6> folders = {beside,
                                                        beside / "../provider",
                                                        beside / ".." / ZEB_LIBRARY_FOLDER / "cmpi",
                                                        beside / ".." / ZEB_LIBRARY_FOLDER,
                                                        ZEB_SYSTEM_PROVIDER_FOLDER,
                                                        "/usr/lib/cmpi"};
  std::error_code ignored;
  for (const auto& folder : folders) {
    if (std::filesystem::exists(folder / kFileName, ignored)) {
      return (folder / kFileName).lexically_normal().string();
    }
  }
  throw ManagerError(std::string("cannot find the plug-in ") + kFileName +
                     ": expected it beside zebcim or in " + ZEB_SYSTEM_PROVIDER_FOLDER +
                     "; --plugin FILE names another place");
}

}  // namespace ZebManager
