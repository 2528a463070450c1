#include "cli/Session.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "cli/Programs.h"

namespace ZebManager {
namespace {

constexpr char kSchemaFile[] = "zeb.mof";

/// A snapshot that is not there is named before anything is loaded.
void requireReadable(const std::string& snapshot) {
  std::error_code error;
  const auto status = std::filesystem::status(snapshot, error);
  if (std::filesystem::is_directory(status)) {
    throw ManagerError("cannot read the snapshot '" + snapshot + "': expected a file, not a folder");
  }
  if (!std::ifstream(snapshot)) {
    throw ManagerError("cannot read the snapshot '" + snapshot + "': " + std::strerror(errno) +
                       "; expected a recorded snapshot");
  }
}

}  // namespace

std::string findSchema(const std::string& option) {
  if (!option.empty()) return option;
  const std::filesystem::path beside(programFolder());
  std::error_code ignored;
  for (const auto& folder : {beside / "../schema", beside / ".." / ZEB_SCHEMA_FOLDER}) {
    const auto file = (folder / kSchemaFile).lexically_normal();
    if (std::filesystem::exists(file, ignored)) return file.string();
  }
  throw ManagerError(std::string("cannot find the schema ") + kSchemaFile + ": expected it in " +
                     (beside / ".." / ZEB_SCHEMA_FOLDER).lexically_normal().string());
}

Session::Session(const Options& options)
    : _deadline(options.timeoutSeconds),
      _options(options),
      _repository(ClassRepository::fromFile(findSchema(options.schema))),
      _broker(_repository) {}

Session::~Session() = default;

ProviderCalls& Session::provider() {
  if (_plugin) return _broker.provider();
  // The plug-in's configuration reads these when the library starts.
  if (!_options.source.empty()) {
    requireReadable(_options.source);
    setenv("ZEB_SOURCE_FILE", _options.source.c_str(), 1);
  }
  if (_options.includeVirtual) setenv("ZEB_INCLUDE_VIRTUAL", "1", 1);
  // Whatever other object managers are configured to: here the plug-in's own computer system is served.
  setenv("ZEB_COMPUTER_SYSTEM_PATH", "", 1);
  _plugin = std::make_unique<PluginLibrary>(_broker, findPlugin(_options.plugin, programFolder()));
  return _broker.provider();
}

}  // namespace ZebManager
