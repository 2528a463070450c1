#include "common/DataStore.h"

#include <exception>

#include "SqliteStore.h"
#include "common/Configuration.h"

namespace ZEB {

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
    return std::make_unique<SqliteStore>(file, kStorePatience, logger);
  } catch (const std::exception& error) {
    logger.error("store %s cannot be opened: %s", file, error.what());
    return nullptr;
  }
}

}  // namespace ZEB
