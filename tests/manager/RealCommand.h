// zebcim with the plug-in itself, on recorded hosts, with stores and run files of its own.
#pragma once

#include <gmock/gmock.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <string>
#include <vector>

#include "Process.h"
#include "posix/TemporaryFolder.h"

namespace ZebManager {

inline std::string snapshotFile(const std::string& host) {
  return std::string(ZEB_SNAPSHOTS) + "/" + host + ".json";
}

inline std::string hostName() {
  std::array<char, 256> name{};
  gethostname(name.data(), name.size() - 1);
  return name.data();
}

class RealCommand : public testing::Test {
 protected:
  std::vector<std::string> environment() const {
    return {"ZEB_CONFIG=/dev/null", "ZEB_STORE_DIR=" + (folder / "store").string(),
            "ZEB_RUN_DIR=" + (folder / "run").string(), "LC_ALL=C.UTF-8", "TZ=UTC"};
  }

  Outcome zebcim(std::vector<std::string> arguments, const std::vector<std::string>& extra = {}) const {
    arguments.insert(arguments.end(), {"--plugin", ZEB_REAL_PLUGIN, "--schema", ZEB_SCHEMA_FILE});
    // The first of two variables with one name counts.
    std::vector<std::string> words = extra;
    for (std::string& word : environment()) words.push_back(std::move(word));
    return run(ZEB_CIM, arguments, words);
  }

  const ZEB::TemporaryFolder folder;
};

}  // namespace ZebManager
