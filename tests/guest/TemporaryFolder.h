#pragma once

#include <stdlib.h>

#include <filesystem>
#include <string>
#include <system_error>

#include "GuestError.h"

namespace ZEB::guest {

/// A new, empty, private folder that goes with the object.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "guest.XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) throw GuestError::fromErrno(name);
    path_ = name;
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

}  // namespace ZEB::guest
