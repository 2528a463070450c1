// What a command works with.
#pragma once

#include <chrono>
#include <iosfwd>
#include <memory>
#include <optional>
#include <string>

#include "broker/Broker.h"
#include "broker/Namespace.h"
#include "cli/Deadline.h"
#include "cli/Options.h"
#include "cli/OwnFolders.h"
#include "local/ServiceLink.h"
#include "plugin/PluginLibrary.h"

namespace ZebManager {

/// The schema that an option names, else the one that belongs to zebcim. Throws ManagerError.
std::string findSchema(const std::string& option);

/// A snapshot that is not there is named before anything is loaded. Throws ManagerError.
void requireReadable(const std::string& snapshot);

/// The schema from the start; the service of this machine, or the plug-in, from the first use on.
class Session {
 public:
  /// Where the plug-in of this process posts how it does.
  enum class Posts { Nowhere, AsConfigured };

  /// Throws SchemaError or ManagerError.
  explicit Session(const Options& options, Posts posts = Posts::Nowhere);
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
  ~Session();

  const Options& options() const { return _options; }
  const ClassRepository& repository() const { return _repository; }
  Broker& broker() { return _broker; }
  /// Runs from the start until the plug-in is gone again.
  Deadline& deadline() { return _deadline; }

  /// What the service serves where one runs, else what the plug-in does. Throws ManagerError.
  Namespace& model();
  /// Loads the plug-in when it is not loaded yet. Throws ManagerError.
  ProviderCalls& provider();
  /// A connection to the service; null when this process has to load the plug-in.
  std::unique_ptr<ServiceLink> service() const;
  /// Where a service runs: the path of what may be called so, as `ServiceLink::pathOf`.
  std::string hintOf(const std::string& name, bool again);
  /// Where a service runs: what it writes of a class, as `shownInstances`.
  std::optional<std::string> shown(std::string_view className);
  /// Forgets the model, so that the next use asks anew; a plug-in that is loaded goes.
  void restart();
  /// The same, but the library stays loaded, which spares the loader's work. Throws ManagerError where it
  /// does not start again; the next use loads it.
  void restartProvider();
  /// Ends the process with status 0 where nothing is left to do: to take thousands of instances apart takes
  /// as long as to make them. Else returns.
  void endProcess();
  /// Told before the model is there: nothing but enumerations of that class will be asked.
  void askOnlyFor(const ClassDef& root);
  bool asksService() const { return _model && !_plugin; }
  /// Whether what is changed is gone with this process.
  bool keepsNothing() const { return _folders && _folders->keepsNothing(); }
  const std::string& runFolder() const { return _runFolder; }

 private:
  void say(const std::string& line) const;
  /// The service ends connections on which nothing is asked.
  ServiceLink& link();

  Deadline _deadline;
  const Options& _options;
  const Posts _posts;
  const std::string _runFolder;  ///< of this machine
  std::optional<OwnFolders> _folders;
  ClassRepository _repository;
  Broker _broker;
  std::unique_ptr<PluginLibrary> _plugin;
  std::unique_ptr<Namespace> _model;
  std::unique_ptr<ServiceLink> _link;
  std::chrono::steady_clock::time_point _linkUsed;
  std::string _askedClasses;  ///< as `ZEB_ASKED_CLASSES`
};

}  // namespace ZebManager
