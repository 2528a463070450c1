#pragma once

#include <fstream>
#include <string>

#include "posix/TemporaryFolder.h"

namespace ZEB::test {

/// A temporary folder with files that a test writes and reads.
class TestFolder : public TemporaryFolder {
 public:
  TestFolder() : TemporaryFolder("zeb-test") {}

  std::string file(const std::string& name) const { return (*this / name).string(); }
  std::string write(const std::string& name, const std::string& content) const {
    std::ofstream(*this / name, std::ios::binary | std::ios::trunc) << content;
    return file(name);
  }
};

}  // namespace ZEB::test
