// What a command works with.
#pragma once

#include <memory>
#include <string>

#include "broker/Broker.h"
#include "cli/Deadline.h"
#include "cli/Options.h"
#include "plugin/PluginLibrary.h"

namespace ZebManager {

/// The schema that an option names, else the one that belongs to zebcim. Throws ManagerError.
std::string findSchema(const std::string& option);

/// The schema from the start, the plug-in from its first use on.
class Session {
 public:
  /// Throws SchemaError or ManagerError.
  explicit Session(const Options& options);
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
  ~Session();

  const ClassRepository& repository() const { return _repository; }
  Broker& broker() { return _broker; }
  /// Runs from the start until the plug-in is gone again.
  Deadline& deadline() { return _deadline; }
  /// Loads the plug-in when it is not loaded yet. Throws ManagerError.
  ProviderCalls& provider();

 private:
  Deadline _deadline;
  const Options& _options;
  ClassRepository _repository;
  Broker _broker;
  std::unique_ptr<PluginLibrary> _plugin;
};

}  // namespace ZebManager
