#include "common/DataStore.h"

#include <exception>
#include <map>
#include <mutex>

#include "SqliteStore.h"
#include "common/Configuration.h"

namespace ZEB {
namespace {

std::mutex statesMutex;
std::map<std::string, DataStoreState> states;

void note(const DataStoreState& state) {
  const std::lock_guard lock(statesMutex);
  states[state.name] = state;
}

}  // namespace

std::uint32_t DataStore::getUInt32(const std::string& key) {
  const auto kept = values();
  const auto found = kept->find(key);
  return found == kept->end() ? 0 : found->second;
}

std::unique_ptr<DataStore> makeDataStore(const std::string& name) {
  const std::string file = Configuration::current()->storeDirectory + name + ".db";
  const Logger logger("DataStore");
  try {
    return std::make_unique<SqliteStore>(file, kStorePatience, logger, [=](const std::string& failure) {
      note({name, file, failure});
    });
  } catch (const std::exception& error) {
    note({name, file, error.what()});
    logger.error("store %s cannot be opened: %s", file, error.what());
    return nullptr;
  }
}

std::vector<DataStoreState> dataStoreStates() {
  const std::lock_guard lock(statesMutex);
  std::vector<DataStoreState> list;
  list.reserve(states.size());
  for (const auto& [name, state] : states) list.push_back(state);
  return list;
}

}  // namespace ZEB
