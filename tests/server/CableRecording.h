// A recording that a test changes while it is played.
#pragma once

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <utility>

namespace ZebManager {

/// A recorded machine with one port, or another, whose first cables the test pulls. What is played changes
/// with the file.
class CableRecording {
 public:
  explicit CableRecording(std::filesystem::path file, const std::string& machine = "one_port.json")
      : _file(std::move(file)), _host(nlohmann::json::parse(std::ifstream(ZEB_SNAPSHOTS "/" + machine))) {
    setCable(true);
  }
  CableRecording(const CableRecording&) = delete;
  CableRecording& operator=(const CableRecording&) = delete;
  ~CableRecording() { std::filesystem::remove(_file); }

  void setCable(bool in, std::size_t port = 0) {
    using nlohmann::json;
    json& link = _host["links"][port];
    json flags = in ? json{"UP", "LOWER_UP", "RUNNING"} : json{"UP"};
    if (link.contains("bondMember")) {
      flags.push_back("SLAVE");
      link["bondMember"]["miiStatus"] = in ? 0 : 2;
    }
    link["flags"] = flags;
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
