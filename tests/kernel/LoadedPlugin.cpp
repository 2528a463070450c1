#include "LoadedPlugin.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>

#include "Namespace.h"

namespace ZEB::test {

LoadedPlugin::LoadedPlugin(FakeBroker& broker)
    : _broker(broker), _library(dlopen(ZEB_PLUGIN, RTLD_NOW | RTLD_LOCAL)) {
  if (!_library) throw std::runtime_error(dlerror());
  const auto entry = [this](const char* name) { return dlsym(_library, name); };
  FakeBroker::Call call(_broker);
  _instances = reinterpret_cast<decltype(&_Generic_Create_InstanceMI)>(entry("_Generic_Create_InstanceMI"))(
      _broker.get(), &call.context(), "ZEBEthernetPort", nullptr);
  _indications = reinterpret_cast<decltype(&_Generic_Create_IndicationMI)>(
      entry("_Generic_Create_IndicationMI"))(_broker.get(), &call.context(), "ZEBEthernetPort", nullptr);
  if (!_instances || !_indications) throw std::runtime_error("the plug-in makes no provider");
  call.enableIndications(_indications);
}

LoadedPlugin::~LoadedPlugin() {
  // While it is busy with a pass, it asks not to be unloaded yet.
  const auto cleanUp = [this](auto* interface) {
    return eventually(
        [&] {
          FakeBroker::Call call(_broker);
          return interface->ft->cleanup(interface, &call.context(), 1).rc == CMPI_RC_OK;
        },
        std::chrono::seconds(100));
  };
  EXPECT_TRUE(cleanUp(_instances));
  EXPECT_TRUE(cleanUp(_indications));
  dlclose(_library);
}

std::size_t LoadedPlugin::count(const std::string& className) {
  FakeBroker::Call call(_broker);
  auto* path = call.path({"root/jxv", CmpiCpp::CmpiName(className)});
  EXPECT_EQ(_instances->ft->enumerateInstanceNames(_instances, &call.context(), &call.result(), path).rc,
            CMPI_RC_OK);
  return call.result().paths.size();
}

bool LoadedPlugin::serves(const std::string& className, const std::string& property,
                          const CmpiCpp::CmpiData& value) {
  FakeBroker::Call call(_broker);
  auto* path = call.path({"root/jxv", CmpiCpp::CmpiName(className)});
  EXPECT_EQ(_instances->ft->enumerateInstances(_instances, &call.context(), &call.result(), path, nullptr).rc,
            CMPI_RC_OK);
  return std::ranges::any_of(call.result().instances, [&](const CmpiCpp::CmpiInstance& instance) {
    return instance.getProperty(property) == value;
  });
}

}  // namespace ZEB::test
