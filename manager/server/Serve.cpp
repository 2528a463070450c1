#include "server/Serve.h"

#include <filesystem>
#include <ostream>
#include <semaphore>

#include "cli/Programs.h"
#include "cli/Session.h"
#include "cli/StopSignals.h"
#include "indications/Delivery.h"
#include "indications/InteropNamespace.h"
#include "server/HttpServer.h"

namespace ZebManager {
namespace {

/// Lines for the service's log, whole ones from any thread.
class Log {
 public:
  explicit Log(std::ostream& out) : _out(out) {}
  void operator()(const std::string& line) {
    const std::lock_guard lock(_mutex);
    _out << "zebcim: " << oneLine(line) << std::endl;
  }

 private:
  std::mutex _mutex;
  std::ostream& _out;
};

std::string configurationOf(const Options& options) {
  return options.config.empty() ? kServerSettingsFile : options.config;
}

ServerSettings settingsOf(const Options& options, Log& log) {
  ServerSettings settings =
      readServerSettings(configurationOf(options), options.config.empty(), std::ref(log));
  if (!options.http.empty()) settings.http = options.http;
  if (!options.https.empty()) settings.https = options.https;
  if (!options.state.empty()) settings.stateDirectory = options.state;
  return settings;
}

/// Options of the plug-in's process: what this one was given.
std::vector<std::string> argumentsOf(const Options& options) {
  std::vector<std::string> arguments = {"--timeout", "0"};
  const auto add = [&](const char* name, const std::string& value) {
    if (!value.empty()) arguments.insert(arguments.end(), {name, value});
  };
  add("--source", options.source);
  add("--plugin", options.plugin);
  add("--schema", options.schema);
  if (options.includeVirtual) arguments.emplace_back("--include-virtual");
  arguments.emplace_back("provide");
  return arguments;
}

/// The socket behind which another starts a process of that kind; empty when this one does.
std::string helperOf(const Options& options, const std::string& kind) {
  return options.helpers.empty() ? "" : options.helpers + "/" + kind;
}

ProcessSource judgesOf(const Options& options) {
  return {findProgram("zebcim-login"), {configurationOf(options)}, helperOf(options, "login")};
}

SupervisorOptions supervisorOptions(const Options& options, const ServerSettings& settings, Log& log) {
  SupervisorOptions supervised = settings.plugin;
  supervised.process = {programFolder() + "/zebcim", argumentsOf(options), helperOf(options, "plugin")};
  supervised.log = std::ref(log);
  return supervised;
}

ClassRepository interopClasses(const std::string& schema) {
  return ClassRepository::fromFile(std::filesystem::path(schema).replace_filename("interop.mof").string());
}

/// The plug-in's process, what is subscribed to, and the way of indications from the one to the other.
class Core {
 public:
  Core(const Options& options, const ServerSettings& settings, Log& log)
      : _schema(findSchema(options.schema)),
        _classes(ClassRepository::fromFile(_schema)),
        _interopClasses(interopClasses(_schema)),
        _delivery(deliverySettings(settings), std::ref(log)),
        _supervisor(
            supervisorOptions(options, settings, log),
            [this](const auto& filters, const std::string& element) { _delivery.deliver(filters, element); }),
        _interop(_interopClasses, _classes, interopSettings(settings), std::ref(log),
                 [this] { subscribe(); }) {
    subscribe();
  }

  const ClassRepository& classes() const { return _classes; }
  ProviderSupervisor& plugin() { return _supervisor; }
  Namespace& interop() { return _interop; }

 private:
  static DeliverySettings deliverySettings(const ServerSettings& settings) {
    DeliverySettings delivery = settings.delivery;
    delivery.directory = settings.stateDirectory;
    return delivery;
  }

  static InteropSettings interopSettings(const ServerSettings& settings) {
    InteropSettings interop;
    interop.directory = settings.stateDirectory;
    return interop;
  }

  /// One at a time, so that the newest state is the last to be told.
  void subscribe() {
    const std::lock_guard lock(_mutex);
    _delivery.setSubscriptions(_interop.subscriptions());
    _supervisor.setFilters(_interop.wantedFilters());
  }

  const std::string _schema;
  const ClassRepository _classes;
  const ClassRepository _interopClasses;
  std::mutex _mutex;
  Delivery _delivery;
  ProviderSupervisor _supervisor;
  InteropNamespace _interop;
};

}  // namespace

namespace {

void checkOptions(const Options& options) {
  const bool ofPlugin = !options.source.empty() || !options.plugin.empty() || options.includeVirtual;
  if (!options.helpers.empty() && ofPlugin) {
    throw ManagerError("with --helpers, options of the plug-in are for whoever starts its processes");
  }
}

}  // namespace

int serve(const Options& options, std::ostream& out, std::ostream& err) {
  checkOptions(options);
  std::binary_semaphore stop(0);
  const StopSignals signals([&] { stop.release(); });
  Log log(err);
  const ServerSettings settings = settingsOf(options, log);
  if (isNowhere(settings.http) && isNowhere(settings.https))
    throw ManagerError("there is nowhere to listen at");
  Core core(options, settings, log);
  Authenticator users(judgesOf(options), std::ref(log));
  Router router(users, core.plugin(), core.classes(), &core.interop(), settings);
  HttpBounds bounds(settings);
  std::vector<std::unique_ptr<HttpServer>> servers;
  if (!isNowhere(settings.http)) {
    servers.push_back(std::make_unique<HttpServer>(listenAt(settings.http), router, bounds, std::nullopt));
    out << "http " << servers.back()->address() << std::endl;
  }
  if (!isNowhere(settings.https)) {
    servers.push_back(std::make_unique<HttpServer>(listenAt(settings.https), router, bounds,
                                                   certificateFor(settings, std::ref(log))));
    out << "https " << servers.back()->address() << std::endl;
  }
  stop.acquire();
  return 0;
}

}  // namespace ZebManager
