#include "local/RunFolder.h"

#include <toml++/toml.h>

#include <cstdlib>

#include "values/ManagerError.h"

namespace ZebManager {

namespace {

bool isUsable(const std::string& folder) {
  return folder.starts_with('/') || folder == "none";
}

}  // namespace

std::string configuredRunFolder() {
  constexpr char kDefault[] = "/run/qv-zeb/";
  const char* const named = std::getenv("ZEB_RUN_DIR");
  std::string folder = named ? named : "";
  if (!folder.empty() && !isUsable(folder))
    throw ManagerError("ZEB_RUN_DIR is '" + folder + "': expected a path that begins with /");
  if (folder.empty()) {
    const char* const file = std::getenv("ZEB_CONFIG");
    try {
      const toml::table table = toml::parse_file(file ? file : "/etc/qv-zeb/qv-zeb.toml");
      folder = table["run-directory"].value_or("");
    } catch (const toml::parse_error&) {
      // Without a file, or with a bad one, the plug-in works with its defaults, too.
    }
  }
  if (!isUsable(folder)) return kDefault;
  return folder.back() == '/' ? folder : folder + "/";
}

}  // namespace ZebManager
