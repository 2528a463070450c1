// Settings of the server, read from a file of the test.
#pragma once

#include <fstream>
#include <string>
#include <vector>

#include "posix/TemporaryFolder.h"
#include "server/ServerSettings.h"
#include "values/ManagerError.h"

namespace ZebManager {

/// A file, what is read from it, and the lines about it.
class SettingsFile {
 public:
  explicit SettingsFile(const std::string& content) {
    std::ofstream(_file) << content;
    _settings = readServerSettings(_file, false, [this](const std::string& line) {
      _warnings.push_back(line.starts_with(_file) ? line.substr(_file.size()) : line);
    });
  }
  const ServerSettings& settings() const { return _settings; }
  /// Without the name of the file in front.
  const std::vector<std::string>& warnings() const { return _warnings; }

 private:
  const ZEB::TemporaryFolder _directory;
  const std::string _file = (_directory / "zebcim.toml").string();
  ServerSettings _settings;
  std::vector<std::string> _warnings;
};

/// Why the server does not start with that file; empty when it does.
inline std::string refusalOf(const std::string& content) {
  try {
    SettingsFile{content};
    return {};
  } catch (const ManagerError& error) {
    return error.what();
  }
}

inline std::string fileWith(const std::string& key, const std::string& value) {
  const std::size_t dot = key.find('.');
  return "[" + key.substr(0, dot) + "]\n" + key.substr(dot + 1) + " = " + value + "\n";
}

}  // namespace ZebManager
