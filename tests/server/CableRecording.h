// A recording that a test changes while it is played.
#pragma once

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <utility>

namespace ZebManager {

/// A recorded machine with one port, whose cable the test pulls. What is played changes with the file.
class CableRecording {
 public:
  explicit CableRecording(std::filesystem::path file)
      : _file(std::move(file)), _host(nlohmann::json::parse(std::ifstream(ZEB_SNAPSHOTS "/one_port.json"))) {
    setCable(true);
  }
  CableRecording(const CableRecording&) = delete;
  CableRecording& operator=(const CableRecording&) = delete;
  ~CableRecording() { std::filesystem::remove(_file); }

  void setCable(bool in) {
    nlohmann::json& link = _host["links"][0];
    link["flags"] = in ? nlohmann::json{"UP", "LOWER_UP", "RUNNING"} : nlohmann::json{"UP"};
    link["carrier"] = in;
    link["operState"] = in ? "UP" : "DOWN";
    const std::filesystem::path whole = _file.string() + ".new";
    std::ofstream(whole) << _host;
    std::filesystem::rename(whole, _file);
  }

 private:
  std::filesystem::path _file;
  nlohmann::json _host;
};

}  // namespace ZebManager
