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

DataStore::Batch::~Batch() {
  try {
    commit();
  } catch (const std::exception&) {
    // Who wants to know commits before.
  }
}

void DataStore::Batch::commit() {
  if (!_store) return;
  DataStore& store = *_store;
  _store = nullptr;
  store.endBatch();
}

std::unique_ptr<DataStore> makeDataStore(const std::string& name) {
  const std::string file = Configuration::current()->storeDirectory + name + ".db";
  const Logger logger("DataStore");
  try {
    auto store = std::make_unique<SqliteStore>(file, kStorePatience, logger);
    note({name, file, ""});
    return store;
  } catch (const std::exception& error) {
    note({name, file, error.what()});
    logger.error("store %s cannot be opened: %s", file, error.what());
    return nullptr;
  }
}

std::vector<DataStoreState> dataStoreStates() {
  const std::lock_guard lock(statesMutex);
  std::vector<DataStoreState> list;
  for (const auto& [name, state] : states) list.push_back(state);
  return list;
}

}  // namespace ZEB
