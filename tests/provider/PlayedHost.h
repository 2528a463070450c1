#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

namespace ZEB::test {

/// A recording that the test changes under the provider: ports and one kind of team, by name.
class PlayedHost {
 public:
  struct Link {
    std::uint32_t index;
    std::string name;
    bool isTeam = false;
    bool up = true;
    bool carrier = true;
    std::uint32_t team = 0;  ///< index of the team that it is a member of
  };

  explicit PlayedHost(std::filesystem::path file) : _file(std::move(file)) {}

  void addPort(std::uint32_t index, const std::string& name, std::uint32_t team = 0) {
    _links.push_back({.index = index, .name = name, .team = team});
  }
  void addTeam(std::uint32_t index, const std::string& name) {
    _links.push_back({.index = index, .name = name, .isTeam = true});
  }
  void remove(const std::string& name) {
    std::erase_if(_links, [&](const Link& link) { return link.name == name; });
  }
  Link& link(const std::string& name) {
    for (Link& link : _links) {
      if (link.name == name) return link;
    }
    throw std::out_of_range(name);
  }

  /// Makes the recording say what was set; whole or not at all.
  void play() const {
    const std::filesystem::path partial = _file.string() + ".part";
    std::ofstream(partial) << text();
    std::filesystem::rename(partial, _file);
  }
  const std::filesystem::path& file() const { return _file; }

 private:
  std::string text() const {
    std::string links;
    for (const Link& link : _links) links += (links.empty() ? "" : ",") + text(link);
    return R"({"format": "zeb-host-snapshot", "version": 1, "links": [)" + links + "]}";
  }
  static std::string text(const Link& link) {
    std::string text =
        R"({"index": )" + std::to_string(link.index) + R"(, "name": ")" + link.name + R"(", "type": 1)";
    text += std::string(R"(, "flags": [)") + (link.up ? R"("UP")" : "");
    text += std::string(link.up && link.carrier ? R"(, "LOWER_UP"])" : "]");
    text += std::string(R"(, "carrier": )") + (link.up && link.carrier ? "true" : "false");
    text += std::string(R"(, "operState": )") + (link.up && link.carrier ? R"("UP")" : R"("DOWN")");
    if (link.isTeam) {
      text += R"(, "kind": "bond", "bond": {"mode": 1})";
    } else {
      const std::string device = "0000:" + std::to_string(10 + link.index) + ":00.0";
      text += R"(, "parentBus": "pci", "parentDevice": ")" + device;
      text += R"(", "hardware": {"bus": "pci", "device": ")" + device + R"(", "pci": ")" + device + R"("})";
    }
    if (link.team != 0) {
      text += R"(, "masterIndex": )" + std::to_string(link.team) +
              R"(, "bondMember": {"state": 0, "miiStatus": )" + (link.carrier ? "0}" : "2}");
    }
    return text + "}";
  }

  std::filesystem::path _file;
  std::vector<Link> _links;
};

}  // namespace ZEB::test
