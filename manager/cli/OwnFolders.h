// Where a recording keeps what this machine keeps elsewhere.
#pragma once

#include <optional>
#include <string>

#include "posix/TemporaryFolder.h"

namespace ZebManager {

/// Folders for settings, run files and state that are not this machine's: those that ZEB_STORE_DIR and
/// ZEB_RUN_DIR name, else temporary ones, which these name from then on and which go when the object goes.
class OwnFolders {
 public:
  /// Throws std::system_error.
  OwnFolders();

  /// For what a server has to keep.
  std::string state() { return path("state"); }
  /// Whether settings are gone with the object.
  bool keepsNothing() const { return _ownStore; }

 private:
  std::string path(const char* name);
  /// Whether it was not named before.
  bool name(const char* variable, const char* folder);

  std::optional<ZEB::TemporaryFolder> _folder;
  const bool _ownStore;
};

}  // namespace ZebManager
