#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace ZEB::test {

/// A directory of its own for one test, gone with everything in it afterwards.
class TemporaryDirectory {
 public:
  TemporaryDirectory() {
    std::string name = (std::filesystem::temp_directory_path() / "zeb-test-XXXXXX").string();
    if (mkdtemp(name.data())) _path = name;
  }
  ~TemporaryDirectory() {
    std::error_code error;
    if (!_path.empty()) std::filesystem::remove_all(_path, error);
  }
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

  const std::filesystem::path& path() const { return _path; }
  std::string file(const std::string& name) const { return (_path / name).string(); }

  std::string write(const std::string& name, const std::string& content) const {
    std::ofstream(_path / name, std::ios::binary | std::ios::trunc) << content;
    return file(name);
  }
  static std::string read(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
  }

 private:
  std::filesystem::path _path;
};

}  // namespace ZEB::test
