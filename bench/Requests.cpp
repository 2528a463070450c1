#include "Commands.h"
#include "Manager.h"
#include "Times.h"

namespace ZebBench {

using namespace ZebManager;

void measureRequests(Arguments arguments, Figures& figures) {
  const int rounds = std::stoi(arguments[0]);
  Manager manager;
  manager.load();
  ProviderCalls& provider = manager.provider();
  const Reply ports = manager.names("ZEB_EthernetPort");
  const std::size_t count = ports.items().size();
  if (count == 0) throw ManagerError("there are no ports");
  const CMPIObjectPath& port = Manager::path(ports, count / 2);
  const AssociationFilter all;

  const auto enumerate = [&](const char* className) {
    if (provider.enumerateInstances(className).orThrow().items().size() < count)
      throw ManagerError(std::string("ports are missing among ") + className);
  };
  const auto median = [&](const char* name, int calls, const auto& call) {
    call();
    figures.add(name, ZebBench::median(timed(rounds, calls, call)));
  };
  constexpr int kCalls = 50;
  median("enumerate", 1, [&] { enumerate("ZEB_EthernetPort"); });
  const double processor = processorMilliseconds();
  enumerate("ZEB_EthernetPort");
  figures.add("enumerate_processor", processorMilliseconds() - processor);
  median("enumerate_names", 1, [&] { manager.names("ZEB_EthernetPort"); });
  median("enumerate_facts", 1, [&] {
    for (const char* className : {"ZEB_EthernetPort", "ZEB_EthernetStatistics"}) enumerate(className);
  });
  median("get", kCalls, [&] { provider.getInstance(port).orThrow(); });
  median("associators", kCalls, [&] { provider.associators(port, all).orThrow(); });
  median("references", kCalls, [&] { provider.references(port, all).orThrow(); });
  figures.add("ports", static_cast<double>(count));
}

}  // namespace ZebBench
