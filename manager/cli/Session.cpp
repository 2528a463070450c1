#include "cli/Session.h"

#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <utility>

#include "cli/Programs.h"
#include "cli/ShownInstances.h"
#include "local/RunFolder.h"
#include "local/ServiceNamespace.h"
#include "plugin/PluginNamespace.h"

namespace ZebManager {
namespace {

constexpr char kSchemaFile[] = "zeb.mof";

void requireAbsolute(const char* variable) {
  const char* const folder = std::getenv(variable);
  if (!folder || *folder == '/') return;
  throw ManagerError(std::string(variable) + " is '" + folder + "': expected a path that begins with /");
}

}  // namespace

void requireReadable(const std::string& snapshot) {
  std::error_code error;
  const auto status = std::filesystem::status(snapshot, error);
  if (std::filesystem::is_directory(status)) {
    throw ManagerError("cannot read the snapshot '" + snapshot + "': expected a file, not a folder");
  }
  if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) {
    throw ManagerError("cannot read the snapshot '" + snapshot +
                       "': expected a file, not a device or a pipe");
  }
  if (!std::ifstream(snapshot)) {
    throw ManagerError("cannot read the snapshot '" + snapshot + "': " + std::strerror(errno) +
                       "; expected a recorded snapshot");
  }
}

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

Session::Session(const Options& options, Posts posts)
    : _deadline(options.timeoutSeconds, options.command == "check" ? kUnknown : 1),
      _options(options),
      _posts(posts),
      _runFolder(configuredRunFolder()),
      _repository(ClassRepository::fromFile(findSchema(options.schema))),
      _broker(_repository) {
  if (!options.source.empty()) _folders.emplace();
}

Session::~Session() = default;

void Session::say(const std::string& line) const {
  if (_options.verbose) std::cerr << "zebcim: " << line << std::endl;
}

std::unique_ptr<ServiceLink> Session::service() const {
  return _options.wantsPlugin() ? nullptr : ServiceLink::find(_runFolder);
}

Namespace& Session::model() {
  if (_model) return *_model;
  if ((_link = service())) {
    _linkUsed = std::chrono::steady_clock::now();
    say("asking the service behind " + serviceSocket(_runFolder));
    _model = std::make_unique<ServiceNamespace>(
        [this](const std::string& request) { return link().ask(request); }, _repository);
  } else {
    say(_options.wantsPlugin() ? "loading the plug-in, as the options want it"
        : _runFolder.empty()
            ? "the run directory is none, in which a service would be found; loading the plug-in"
            : "no service listens at " + serviceSocket(_runFolder) + "; loading the plug-in");
    _model = std::make_unique<PluginNamespace>(provider());
  }
  return *_model;
}

ServiceLink& Session::link() {
  constexpr std::chrono::milliseconds kFresh(500);
  const auto now = std::chrono::steady_clock::now();
  if (now - std::exchange(_linkUsed, now) > kFresh) _link = ServiceLink::find(_runFolder);
  if (!_link) throw ManagerError("the service has ended");
  return *_link;
}

std::string Session::hintOf(const std::string& name, bool again) {
  model();
  return asksService() ? link().pathOf(name, again) : std::string();
}

std::optional<std::string> Session::shown(std::string_view className) {
  model();
  if (!asksService()) return std::nullopt;
  return link().ask(shownMessage(className, _options.jsonForm()));
}

void Session::askOnlyFor(const ClassDef& root) {
  for (const ClassDef* asked : _repository.instantiable(root)) {
    // What an association ties is needed as well.
    if (asked->association) return _askedClasses.clear();
    _askedClasses += asked->name + " ";
  }
}

void Session::restart() {
  _model.reset();
  _plugin.reset();
}

void Session::restartProvider() {
  _model.reset();
  if (!_plugin) return;
  try {
    _plugin->restart();
  } catch (...) {
    _plugin.reset();
    throw;
  }
}

void Session::endProcess() {
#if !defined(ZEB_SANITIZE_ADDRESS) && !defined(ZEB_SANITIZE_THREAD)  // which look at what is left
  // Another plug-in may rely on its clean-up.
  if (!_options.plugin.empty()) return;
  _folders.reset();
  _exit(0);
#endif
}

ProviderCalls& Session::provider() {
  if (_plugin) return _broker.provider();
  requireAbsolute("ZEB_STORE_DIR");
  // The plug-in's configuration reads these when the library starts.
  if (!_options.source.empty()) {
    requireReadable(_options.source);
    setenv("ZEB_SOURCE_FILE", _options.source.c_str(), 1);
  }
  if (_options.includeVirtual) setenv("ZEB_INCLUDE_VIRTUAL", "1", 1);
  // Whatever other object managers are configured to: here the plug-in's own computer system is served.
  setenv("ZEB_COMPUTER_SYSTEM_PATH", "", 1);
  if (_posts == Posts::Nowhere) {
    // Reports are a service's. A folder that the environment names is somebody's own, unless a service uses
    // it.
    setenv("ZEB_RUN_DIR", "none", ServiceLink::find(_runFolder) ? 1 : 0);
    if (_options.command != "watch") {
      // What nobody waits for would only compete with what is asked.
      setenv("ZEB_AUTOSTART", "0", 0);
      setenv("ZEB_ONE_QUESTION", "1", 1);
      setenv("ZEB_ASKED_CLASSES", _askedClasses.c_str(), 1);
    }
  }
  _plugin = std::make_unique<PluginLibrary>(_broker, findPlugin(_options.plugin, programFolder()));
  return _broker.provider();
}

}  // namespace ZebManager
