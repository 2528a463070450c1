// The fixture of the tests of doctor.
#pragma once

#include <unistd.h>

#include <ctime>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>

#include "RealCommand.h"
#include "support/Content.h"

namespace ZebManager {

class DoctorCommand : public RealCommand {
 protected:
  Outcome doctor(const std::vector<std::string>& extra = {}) const {
    return zebcim({"doctor", "--source", snapshotFile("teams")}, extra);
  }

  void makeStores() const {
    ASSERT_EQ(zebcim({"instances", "settings", "--source", snapshotFile("teams")}).status, 0);
  }
  /// Of everything below a folder: name, length, and when it was last changed.
  std::map<std::string, std::string> traces(const std::string& below = "") const {
    std::map<std::string, std::string> all;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder / below)) {
      const std::string content = entry.is_regular_file() ? ZEB::test::contentOf(entry.path()) : "";
      all[entry.path()] =
          content + std::to_string(std::filesystem::last_write_time(entry).time_since_epoch().count());
    }
    return all;
  }

  /// What a plug-in in this process would have reported.
  static nlohmann::json report() {
    std::string name;
    std::getline(std::ifstream("/proc/self/comm"), name);
    return {{"pid", getpid()},
            {"process", name},
            {"started", std::time(nullptr) - 1000},
            {"source", nullptr},
            {"autostart", true},
            {"pass",
             {{"at", std::time(nullptr)}, {"outcome", "done"}, {"failure", nullptr}, {"seconds", 0.0015}}},
            {"passes", 34},
            {"failures", 0},
            {"linkMessages", 5},
            {"indications", true},
            {"unread", nullptr},
            {"stores", nlohmann::json::array({{{"name", "A"}, {"file", "/a.db"}, {"failure", nullptr}}})},
            {"records", {{"file", "/r.toml"}, {"failure", nullptr}}}};
  }
  void post(const std::string& text) const {
    std::filesystem::create_directories(folder / "run");
    std::ofstream(folder / "run/health.json") << text;
  }
  void expectTrouble(const Outcome& outcome, const std::string& line) const {
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.out, testing::HasSubstr(line));
  }
};

}  // namespace ZebManager
