#pragma once

#include <gmock/gmock.h>

#include <filesystem>
#include <memory>
#include <string>

#include "common/DataStore.h"
#include "support/Content.h"
#include "support/Environment.h"
#include "support/FilesInMemory.h"
#include "support/ProcessLog.h"
#include "support/StoreTrouble.h"
#include "support/TestFolder.h"

namespace ZEB::test {

class StoreTest : public testing::Test {
 protected:
  std::string file() const { return directory.file("stores/S.db"); }
  static std::unique_ptr<DataStore> open() { return makeDataStore("S"); }

  /// Runs SQL on the store's file, as a process of its own would.
  bool sql(const std::string& statements) const { return runSql(file(), statements); }

  static void fillSomePages() {
    DataStore::Values values{{"kept", 1}};
    for (std::uint32_t i = 0; i < 2000; ++i) values.emplace("a key of some length " + std::to_string(i), i);
    open()->addDefaults(values);
  }

  void overwrite(std::size_t from, std::size_t count) const {
    std::fstream out(file(), std::ios::in | std::ios::out | std::ios::binary);
    out.seekp(static_cast<std::streamoff>(from));
    for (std::size_t i = 0; i < count; ++i) out.put(static_cast<char>(0xA5 ^ (i * 7)));
  }

  /// Asserts that the file was put aside as `aside`, byte by byte, that the log says so, and that a store
  /// without values is there in its place and works.
  void expectFreshStore(const std::string& damagedContent, const std::string& aside) {
    const auto store = open();
    ASSERT_TRUE(store);
    EXPECT_FALSE(store->exists("kept"));
    EXPECT_EQ(contentOf(aside), damagedContent);
    EXPECT_TRUE(log.sink->mentions(LogLevel::Error, "kept as " + aside));
    store->setUInt32("kept", 3);
    EXPECT_EQ(open()->getUInt32("kept"), 3u);
  }

  FilesInMemory inMemory;
  TestFolder directory;
  Environment storeDirectory{"ZEB_STORE_DIR", directory.file("stores")};
  ProcessLog log;
};

}  // namespace ZEB::test
