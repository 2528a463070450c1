#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

#include "common/Configuration.h"
#include "common/Logger.h"
#include "posix/TemporaryFolder.h"
#include "support/FakeBroker.h"
#include "support/RecordingLogSink.h"
#include "support/SchemaDefaults.h"

namespace ZEB::test {

/// The environment of a plug-in under test: an object manager with the habits of the profile that the tests
/// run in, a recorded snapshot, stores and status file in a folder of its own, no timer, and a sink that
/// keeps every log line of the process.
class ProviderTest : public testing::Test {
 protected:
  ProviderTest() {
    setenv("ZEB_CONFIG", "/nonexistent", 1);
    setenv("ZEB_STORE_DIR", (folder / "store").c_str(), 1);
    setenv("ZEB_RUN_DIR", (folder / "run").c_str(), 1);
    setenv("ZEB_AUTOSTART", "0", 1);
    serve("one_port.json");
    declareSchemaDefaults(broker);
    setProcessLogSink(log, LogLevel::Info);
  }
  ~ProviderTest() override {
    setProcessLogSink(nullptr, LogLevel::Warn);
    for (const std::string& violation : broker.violations()) ADD_FAILURE() << violation;
  }

  /// The recorded snapshot of that name in tests/data/snapshots, or with that path.
  static void serve(const std::string& snapshot) {
    setenv("ZEB_SOURCE_FILE", (std::filesystem::path(ZEB_TEST_DATA) / "snapshots" / snapshot).c_str(), 1);
    Configuration::reset();
  }
  static void configure(const char* variable, const std::string& value) {
    setenv(variable, value.c_str(), 1);
    Configuration::reset();
  }

  TemporaryFolder folder;
  std::shared_ptr<RecordingLogSink> log = std::make_shared<RecordingLogSink>();
  FakeBroker broker;
};

}  // namespace ZEB::test
