// The plug-in itself in the provider's process, with messages that tests can write without a protocol:
// "count CLASS" enumerates; "modify-wrong-list" changes the event settings with a property list that names a
// setting and then something that is none, which the plug-in does not return from.
#include <unistd.h>

#include <sstream>

#include "isolation/ProviderProcess.h"
#include "plugin/PluginLibrary.h"
#include "values/CallMemory.h"
#include "values/Values.h"

namespace ZebManager {
namespace {

class RealProvider : public HostedProvider {
 public:
  Broker& broker() override { return _broker; }

  std::string perform(std::string_view message) override {
    std::istringstream words{std::string(message)};
    std::string deed;
    std::string className;
    words >> deed >> className;
    if (deed == "count") {
      return std::to_string(provider().enumerateInstances(className).orThrow().items().size());
    }
    if (deed == "pid") return std::to_string(getpid());
    if (deed == "modify-wrong-list") return modifyWithWrongList();
    throw ManagerError("unknown deed '" + deed + "'");
  }

  std::string instanceElement(const Instance& indication) override {
    const NamedValue* const event = indication.body().properties.find("EventID");
    return event ? std::string(textOf(event->data.value.string)) : "";
  }

 private:
  ProviderCalls& provider() { return _broker.provider(); }

  std::string modifyWithWrongList() {
    const Reply settings = provider().enumerateInstances("ZEB_EthEventSettings").orThrow();
    const Instance& instance = *as<Instance>(settings.items().front().value.inst);
    Arena arena;
    const ArenaScope scope(arena);
    const CMPIObjectPath* const path = instance.ft->getObjectPath(&instance, nullptr);
    const char* const properties[] = {"PollInterval", "NoSuchSetting", nullptr};
    return std::to_string(provider().modifyInstance(*path, instance, properties).code);
  }

  ClassRepository _repository = ClassRepository::fromFile(ZEB_SCHEMA_FILE);
  Broker _broker{_repository};
  PluginLibrary _plugin{_broker, ZEB_REAL_PLUGIN};
};

}  // namespace
}  // namespace ZebManager

int main() {
  return ZebManager::runProviderProcess(ZebManager::kProviderSocket,
                                        [] { return std::make_unique<ZebManager::RealProvider>(); });
}
