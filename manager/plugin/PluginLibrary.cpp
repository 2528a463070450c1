#include "plugin/PluginLibrary.h"

#include <dlfcn.h>

#include "values/CallMemory.h"
#include "values/Values.h"

namespace ZebManager {
namespace {

std::string loaderError() {
  const char* const text = dlerror();
  return text ? text : "unknown error";
}

template <class Interface>
void cleanUp(Interface*& interface, const Context& context) {
  if (interface && interface->ft && interface->ft->cleanup) interface->ft->cleanup(interface, &context, 1);
  interface = nullptr;
}

}  // namespace

PluginLibrary::PluginLibrary(Broker& broker, const std::string& path) : _broker(broker), _path(path) {
  try {
    load();
  } catch (...) {
    close();
    throw;
  }
}

PluginLibrary::~PluginLibrary() {
  close();
}

void PluginLibrary::load() {
  _library = dlopen(_path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (!_library) throw ManagerError("cannot load the plug-in '" + _path + "': " + loaderError());
  begin();
}

void PluginLibrary::begin() {
  create(_interfaces.instance, "_Generic_Create_InstanceMI");
  create(_interfaces.association, "_Generic_Create_AssociationMI");
  create(_interfaces.method, "_Generic_Create_MethodMI");
  create(_interfaces.indication, "_Generic_Create_IndicationMI");
  _broker.provider().connect(_interfaces);
}

template <class Interface>
void PluginLibrary::create(Interface*& interface, const char* factoryName) {
  using Factory = Interface* (*)(const CMPIBroker*, const CMPIContext*, const char*, CMPIStatus*);
  const auto factory = reinterpret_cast<Factory>(dlsym(_library, factoryName));
  if (!factory) {
    throw ManagerError("'" + _path + "' is no provider plug-in: expected it to export " + factoryName);
  }
  Arena arena;
  const ArenaScope scope(arena);
  CMPIStatus status = {CMPI_RC_OK, nullptr};
  interface =
      factory(_broker.face(), makeCallContext(arena, _broker.provider().nameSpace()), kProviderName, &status);
  if (interface) return;
  const std::string message(textOf(status.msg));
  throw ManagerError(
      "the plug-in '" + _path + "' does not start: " +
      (message.empty() ? std::string(factoryName) + " gave no interface for " + kProviderName : message));
}

void PluginLibrary::end() {
  _broker.provider().connect({});
  Arena arena;
  const ArenaScope scope(arena);
  const Context& context = *makeCallContext(arena, _broker.provider().nameSpace());
  cleanUp(_interfaces.indication, context);
  cleanUp(_interfaces.method, context);
  cleanUp(_interfaces.association, context);
  cleanUp(_interfaces.instance, context);
}

void PluginLibrary::restart() {
  end();
  begin();
}

void PluginLibrary::close() {
  if (!_library) return;
  end();
  dlclose(_library);
  _library = nullptr;
}

}  // namespace ZebManager
