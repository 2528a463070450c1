#pragma once

#include <optional>
#include <string>
#include <vector>

#include "broker/Broker.h"
#include "plugin/PluginLibrary.h"

namespace ZebBench {

/// The plug-in in the embedded object manager's broker, from the shared object that an installation has. Its
/// configuration comes from the environment.
class Manager {
 public:
  /// The broker alone; the schema is read.
  Manager();

  /// Loads the plug-in, which builds its model. Milliseconds that it took.
  double load();

  ZebManager::Broker& broker() { return _broker; }
  ZebManager::ProviderCalls& provider() { return _broker.provider(); }

  /// The names of a class's instances; they live as long as the reply.
  ZebManager::Reply names(const std::string& className);
  static const CMPIObjectPath& path(const ZebManager::Reply& names, std::size_t index);

  /// Has the worker's passes poll however often they come, instead of at the interval that is set.
  void pollAlways();
  /// One pass of the worker.
  void pass();

 private:
  const ZebManager::ClassRepository _repository;
  ZebManager::Broker _broker;
  std::optional<ZebManager::PluginLibrary> _plugin;
};

}  // namespace ZebBench
