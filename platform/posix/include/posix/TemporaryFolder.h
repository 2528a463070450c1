#pragma once

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

namespace ZEB {

/// A new, empty, private folder, gone with everything in it when the object goes.
class TemporaryFolder {
 public:
  /// Its name begins with `name`. Throws std::system_error.
  explicit TemporaryFolder(const std::string& name = "zeb") {
    std::string pattern = (std::filesystem::temp_directory_path() / (name + "-XXXXXX")).string();
    if (!mkdtemp(pattern.data())) {
      throw std::system_error(errno, std::generic_category(), "cannot make a folder in '" + pattern + "'");
    }
    _path = pattern;
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(_path, ignored);
  }

  const std::filesystem::path& path() const { return _path; }
  std::filesystem::path operator/(const std::string& name) const { return _path / name; }

 private:
  std::filesystem::path _path;
};

}  // namespace ZEB
