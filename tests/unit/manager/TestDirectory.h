// A directory that lives as long as a test.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace ZebManager {

class TestDirectory {
 public:
  TestDirectory() {
    std::string name = (std::filesystem::temp_directory_path() / "zebcim-XXXXXX").string();
    if (!mkdtemp(name.data())) throw std::runtime_error("no directory for the test");
    _path = name;
  }
  TestDirectory(const TestDirectory&) = delete;
  TestDirectory& operator=(const TestDirectory&) = delete;
  ~TestDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(_path, ignored);
  }
  std::string path() const { return _path; }

 private:
  std::string _path;
};

}  // namespace ZebManager
