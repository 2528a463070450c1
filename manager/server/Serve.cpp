#include "server/Serve.h"

#include <fcntl.h>
#include <sys/file.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <filesystem>
#include <iterator>
#include <ostream>
#include <semaphore>
#include <thread>
#include <utility>

#include "alertmanager/StraightAlerts.h"
#include "cli/OwnFolders.h"
#include "cli/ProgramOutput.h"
#include "cli/Programs.h"
#include "cli/Recording.h"
#include "cli/Session.h"
#include "cli/StopSignals.h"
#include "indications/Delivery.h"
#include "indications/InteropNamespace.h"
#include "local/RunFolder.h"
#include "server/HttpServer.h"
#include "server/LocalServer.h"
#include "server/MetricsResource.h"
#include "server/PageResources.h"
#include "server/PluginModel.h"

namespace ZebManager {
namespace {

/// Two of them would deliver the same alerts, and lose each other's subscriptions.
class StateLock {
 public:
  explicit StateLock(const std::string& folder) {
    std::error_code ignored;
    std::filesystem::create_directories(folder, ignored);
    const std::string file = folder + "/lock";
    _file = ZEB::FileDescriptor(open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    if (_file && flock(_file.get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
      throw ManagerError("another server uses the state folder " + folder + "; --state names another one");
    }
  }

 private:
  ZEB::FileDescriptor _file;
};

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

/// What a recording raises is not for the listeners of this machine, nor for its Alertmanagers: without a
/// word on where, state goes with the server.
std::string stateOf(const Options& options, const ServerSettings& settings, OwnFolders* own) {
  if (!options.state.empty()) return options.state;
  const bool named = !options.config.empty() && settings.stateDirectory != ServerSettings().stateDirectory;
  return own && !named ? own->state() : settings.stateDirectory;
}

ServerSettings settingsOf(const Options& options, OwnFolders* own, Log& log) {
  ServerSettings settings =
      readServerSettings(configurationOf(options), options.config.empty(), std::ref(log));
  if (!options.http.empty()) settings.http = options.http;
  if (!options.https.empty()) settings.https = options.https;
  settings.stateDirectory = stateOf(options, settings, own);
  if (own && options.config.empty()) settings.alertmanager.urls.clear();
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

/// What the plug-in refuses, each of its processes would refuse in turn. Why, the command has said.
bool isPlayable(const Options& options) try {
  std::vector<std::string> arguments = argumentsOf(options);
  arguments.back() = "instances";
  arguments.emplace_back("ZEB_ComputerSystem");
  outputOf("zebcim", arguments);
  return true;
} catch (const ProgramFailed&) {
  return false;
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
  ClassRepository classes =
      ClassRepository::fromFile(std::filesystem::path(schema).replace_filename("interop.mof").string());
  classes.leaveOutUnused();
  return classes;
}

/// No name that a client can give a filter begins so.
constexpr char kPageFilter[] = "\npage";

/// The plug-in's process, what is subscribed to, and the way of indications from the one to the other.
class Core {
 public:
  Core(const Options& options, const ServerSettings& settings, Log& log)
      : _schema(findSchema(options.schema)),
        _classes(ClassRepository::fromFile(_schema)),
        _interopClasses(interopClasses(_schema)),
        _delivery(deliverySettings(settings), std::ref(log)),
        _watchers([this] { subscribe(); }),
        _model(_classes, [this](const std::string& request) { return _supervisor.perform(request, true); }),
        _live(
            _model, [this] { return readPartners(answerTo(kPartnersMessage)); }, options.source),
        _alerts(_classes),
        _straight(straightAlerts(settings, log)),
        _supervisor(supervisorOptions(options, settings, log),
                    [this](const auto& filters, const std::string& element) { deliver(filters, element); }),
        _explanations(options, _classes, [this] { return answerTo(kRecordingMessage); }),
        _interop(_interopClasses, _classes, interopSettings(settings), std::ref(log),
                 [this] { subscribe(); }) {
    subscribe();
    if (_straight) _straight->follower.start();
  }

  Core(const Core&) = delete;
  Core& operator=(const Core&) = delete;
  ~Core() {
    if (_straight) _straight->follower.stop();
    _live.stop();
  }

  const ClassRepository& classes() const { return _classes; }
  Namespace& model() { return _model; }
  LiveModel& live() { return _live; }
  const AlertCounts& alerts() const { return _alerts; }
  Explanations& explanations() { return _explanations; }
  ProviderSupervisor& plugin() { return _supervisor; }
  Namespace& interop() { return _interop; }
  LocalWatchers& watchers() { return _watchers; }

 private:
  static DeliverySettings deliverySettings(const ServerSettings& settings) {
    DeliverySettings delivery = settings.delivery;
    delivery.directory = settings.stateDirectory;
    return delivery;
  }

  std::unique_ptr<StraightAlerts> straightAlerts(const ServerSettings& settings, Log& log) {
    if (settings.alertmanager.urls.empty()) return nullptr;
    return std::make_unique<StraightAlerts>(settings.stateDirectory, settings.alertmanager, settings.delivery,
                                            _model, std::ref(log));
  }

  static InteropSettings interopSettings(const ServerSettings& settings) {
    InteropSettings interop;
    interop.directory = settings.stateDirectory;
    interop.aliases = settings.aliases;
    using std::chrono::ceil, std::chrono::seconds;
    interop.retryInterval = static_cast<std::uint64_t>(ceil<seconds>(settings.delivery.longestPause).count());
    interop.retryTime = static_cast<std::uint64_t>(settings.delivery.longestWait.count());
    return interop;
  }

  /// By the plug-in's process, which may read more of the machine than this one.
  std::string answerTo(std::string_view message) {
    auto answer = _supervisor.perform(std::string(message), true);
    if (answer.outcome != ProviderSupervisor::Answer::Outcome::Done) throw ManagerError(answer.body);
    return std::move(answer.body);
  }

  void deliver(const std::vector<std::string>& filters, const std::string& element) {
    std::vector<std::string> others = _watchers.deliver(filters, element);
    const bool forPages = std::erase(others, kPageFilter) > 0;
    _delivery.deliver(others, element);
    if (!forPages) return;
    _alerts.add(element);
    if (_straight) _straight->follower.receive(element);
    _live.alert(element);
  }

  /// One at a time, so that the newest state is the last to be told.
  void subscribe() {
    const std::lock_guard lock(_mutex);
    _delivery.setSubscriptions(_interop.subscriptions());
    std::vector<IndicationFilter> filters = _interop.wantedFilters();
    std::ranges::move(_watchers.filters(), std::back_inserter(filters));
    filters.push_back({kPageFilter, "SELECT * FROM ZEB_EthernetIndication", "WQL"});
    _supervisor.setFilters(filters);
  }

  const std::string _schema;
  const ClassRepository _classes;
  const ClassRepository _interopClasses;
  std::mutex _mutex;
  Delivery _delivery;
  LocalWatchers _watchers;
  PluginModel _model;
  LiveModel _live;
  AlertCounts _alerts;
  const std::unique_ptr<StraightAlerts> _straight;  ///< null without an Alertmanager
  ProviderSupervisor _supervisor;
  Explanations _explanations;  // its thread calls the supervisor
  InteropNamespace _interop;
};

/// What is served besides CIM, by path.
Resources resourcesOf(Core& core) {
  Resources resources;
  addPage(resources, core.live(), core.model(), core.explanations());
  resources.emplace("/metrics", metricsResource(metricsText(core.plugin(), core.alerts())));
  return resources;
}

/// By its whole path: commands stand elsewhere.
std::string playedFile(const Options& options) {
  const std::string file = options.source.empty() ? configuredRecording() : options.source;
  return file.empty() ? file : std::filesystem::absolute(file).string();
}

/// Without it commands of this machine load the plug-in themselves.
std::unique_ptr<LocalServer> listenToCommands(const Options& options, Core& core, Router& router,
                                              HttpBounds& bounds, Log& log) {
  try {
    const std::string runFolder = configuredRunFolder();
    if (runFolder.empty()) throw ManagerError("the run directory is none");
    return std::make_unique<LocalServer>(serviceSocket(runFolder), router, bounds, core.watchers(),
                                         metricsText(core.plugin(), core.alerts()), playedFile(options),
                                         core.classes());
  } catch (const ManagerError& error) {
    log(std::string("commands do not find this service: ") + error.what());
    return nullptr;
  }
}

void checkOptions(const Options& options) {
  const bool ofPlugin = !options.source.empty() || !options.plugin.empty() || options.includeVirtual;
  if (!options.helpers.empty() && ofPlugin) {
    throw ManagerError("with --helpers, options of the plug-in are for whoever starts its processes");
  }
}

}  // namespace

namespace {

using Servers = std::vector<std::unique_ptr<HttpServer>>;

/// Until no request is under way.
void waitUntilFree(const Servers& servers, const LocalServer* local,
                   std::chrono::steady_clock::time_point end) {
  constexpr std::chrono::milliseconds kRound{10};
  const auto isFree = [&] {
    return (!local || local->requests().isFree()) && std::ranges::all_of(servers, [](const auto& server) {
             return std::as_const(*server).requests().isFree();
           });
  };
  while (!isFree() && std::chrono::steady_clock::now() < end) std::this_thread::sleep_for(kRound);
}

/// What does not return by itself is answered while there is time to send that, and to end processes.
void endInTime(const Servers& servers, LocalServer* local, Authenticator& users, ProviderSupervisor& plugin,
               std::chrono::seconds time) {
  constexpr std::chrono::seconds kForProcesses{3};
  constexpr std::chrono::seconds kForAnswers{1};
  const auto patience = std::chrono::steady_clock::now() + time - kForProcesses;
  for (const auto& server : servers) server->quiesce();
  if (local) local->quiesce();
  waitUntilFree(servers, local, patience);
  users.stop();
  plugin.stop();
  waitUntilFree(servers, local, std::chrono::steady_clock::now() + kForAnswers);
}

}  // namespace

int serve(const Options& options, std::ostream& out, std::ostream& err) {
  checkOptions(options);
  std::binary_semaphore stop(0);
  const StopSignals signals([&] { stop.release(); });
  Log log(err);
  std::optional<OwnFolders> own;
  if (!options.source.empty()) {
    requireReadable(options.source);
    own.emplace();
    if (!isPlayable(options)) return 1;
  }
  const ServerSettings settings = settingsOf(options, own ? &*own : nullptr, log);
  const StateLock lock(settings.stateDirectory);
  Core core(options, settings, log);
  Authenticator users(judgesOf(options), std::ref(log));
  Router router(users, core.plugin(), core.classes(), &core.interop(), settings, resourcesOf(core));
  HttpBounds bounds(settings);
  const auto local = listenToCommands(options, core, router, bounds, log);
  if (!local && isNowhere(settings.http) && isNowhere(settings.https))
    throw ManagerError("there is nowhere to listen at");
  Servers servers;
  if (!isNowhere(settings.http)) {
    servers.push_back(std::make_unique<HttpServer>(listenAt(settings.http), router, bounds, std::nullopt));
    out << "http " << servers.back()->address() << std::endl;
  }
  if (!isNowhere(settings.https)) {
    servers.push_back(std::make_unique<HttpServer>(listenAt(settings.https), router, bounds,
                                                   certificateFor(settings, std::ref(log))));
    out << "https " << servers.back()->address() << std::endl;
  }
  if (servers.empty()) out << "commands " << serviceSocket(configuredRunFolder()) << std::endl;
  stop.acquire();
  endInTime(servers, local.get(), users, core.plugin(), settings.stopTime);
  return 0;
}

}  // namespace ZebManager
