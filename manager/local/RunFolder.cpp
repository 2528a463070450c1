#include "local/RunFolder.h"

#include <toml++/toml.h>

#include <cstdlib>

#include "values/ManagerError.h"

namespace ZebManager {

namespace {

constexpr char kNowhere[] = "none";

bool isUsable(const std::string& folder) {
  return folder.starts_with('/') || folder == kNowhere;
}

/// What the plug-in's configuration file says. Without a file, or with a bad one, the plug-in works with its
/// defaults, too.
std::string inFile(const char* key) try {
  const char* const file = std::getenv("ZEB_CONFIG");
  const toml::table table = toml::parse_file(file ? file : "/etc/qv-zeb/qv-zeb.toml");
  return table[key].value_or("");
} catch (const toml::parse_error&) {
  return {};
}

}  // namespace

std::string configuredRunFolder() {
  constexpr char kDefault[] = "/run/qv-zeb/";
  const char* const named = std::getenv("ZEB_RUN_DIR");
  std::string folder = named ? named : "";
  if (!folder.empty() && !isUsable(folder))
    throw ManagerError("ZEB_RUN_DIR is '" + folder + "': expected a path that begins with /, or " + kNowhere);
  if (folder.empty()) folder = inFile("run-directory");
  if (!isUsable(folder)) return kDefault;
  if (folder == kNowhere) return {};
  return folder.back() == '/' ? folder : folder + "/";
}

std::string configuredRecording() {
  const char* const named = std::getenv("ZEB_SOURCE_FILE");
  return named && *named ? named : inFile("source-file");
}

}  // namespace ZebManager
