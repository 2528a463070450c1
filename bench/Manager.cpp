#include "Manager.h"

#include "Times.h"
#include "values/CallMemory.h"
#include "values/Values.h"

namespace ZebBench {

using namespace ZebManager;

Manager::Manager() : _repository(ClassRepository::fromFile(ZEB_SCHEMA_FILE)), _broker(_repository) {}

double Manager::load() {
  const auto begin = Clock::now();
  _plugin.emplace(_broker, ZEB_PLUGIN);
  return millisecondsSince(begin);
}

Reply Manager::names(const std::string& className) {
  return provider().enumerateInstanceNames(className).orThrow();
}

const CMPIObjectPath& Manager::path(const Reply& names, std::size_t index) {
  return *names.items()[index].value.ref;
}

void Manager::pollAlways() {
  constexpr char kInterval[] = "PollInterval";
  const Reply settings = provider().enumerateInstances("ZEB_EthEventSettings").orThrow();
  if (settings.items().empty()) throw ManagerError("there are no event settings: the source has no ports");
  Arena arena;
  const ArenaScope scope(arena);
  const CMPIInstance* current = settings.items()[0].value.inst;
  CMPIInstance* wanted = current->ft->clone(current, nullptr);
  CMPIValue never{};
  never.uint32 = 0;
  wanted->ft->setProperty(wanted, kInterval, &never, CMPI_uint32);
  const char* const list[] = {kInterval, nullptr};
  const CMPIObjectPath* path = current->ft->getObjectPath(current, nullptr);
  provider().modifyInstance(*path, *wanted, list).orThrow();
  wanted->ft->release(wanted);
}

void Manager::pass() {
  Arena arena;
  const ObjectPath& path = *makePath(arena, kNameSpace, "ZEB_AutoStartEthernetPort");
  provider().invokeMethod(path, "PerformWork", *makeArgs(arena), *makeArgs(arena)).orThrow();
}

}  // namespace ZebBench
