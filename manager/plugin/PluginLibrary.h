// The plug-in as a shared object.
#pragma once

#include <string>

#include "broker/Broker.h"

namespace ZebManager {

/// Name under which the plug-in's provider is registered.
inline constexpr char kProviderName[] = "ZEBEthernetPort";

/// Loads the plug-in, connects its provider with the broker, and takes both apart again at the end. The
/// broker has to outlive it, and no call may be under way when it goes.
class PluginLibrary {
 public:
  /// Throws ManagerError with one line: the file that does not load, or the message with which a factory
  /// refused.
  PluginLibrary(Broker& broker, const std::string& path);
  PluginLibrary(const PluginLibrary&) = delete;
  PluginLibrary& operator=(const PluginLibrary&) = delete;
  /// Ends the provider's interfaces as an object manager does that is terminating, then unloads the library.
  ~PluginLibrary();

  /// Ends the provider as above and begins it anew; the library stays loaded. No call may be under way.
  /// Throws as the constructor does; then it can only be destroyed.
  void restart();

 private:
  void load();
  void begin();
  void end();
  template <class Interface>
  void create(Interface*& interface, const char* factoryName);
  void close();

  Broker& _broker;
  std::string _path;
  void* _library = nullptr;
  ProviderInterfaces _interfaces;
};

/// Where the plug-in is: the option, else the environment's ZEB_PLUGIN, else beside the executable as in the
/// build tree and in an installation, else where the system keeps providers. Throws ManagerError.
std::string findPlugin(const std::string& option, const std::string& executableFolder);

}  // namespace ZebManager
