#include "common/DataStore.h"

#include <cstdlib>
#include <exception>
#include <map>
#include <mutex>

#include "SeenStore.h"
#include "SqliteStore.h"
#include "common/Configuration.h"

namespace ZEB {
namespace {

/// Set by who only looks. Not the site's to set.
constexpr char kLookVariable[] = "ZEB_LOOK";

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
  const auto report = [=](const std::string& failure) { note({name, file, failure}); };
  if (std::getenv(kLookVariable)) return std::make_unique<SeenStore>(file, report);
  try {
    return std::make_unique<SqliteStore>(file, kStorePatience, logger, report);
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
