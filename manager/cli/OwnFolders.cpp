#include "cli/OwnFolders.h"

#include <cstdlib>

namespace ZebManager {

OwnFolders::OwnFolders() : _ownStore(name("ZEB_STORE_DIR", "store")) {
  name("ZEB_RUN_DIR", "run");
}

std::string OwnFolders::path(const char* name) {
  if (!_folder) _folder.emplace("zebcim");
  return (*_folder / name).string();
}

bool OwnFolders::name(const char* variable, const char* folder) {
  if (std::getenv(variable)) return false;
  setenv(variable, path(folder).c_str(), 1);
  return true;
}

}  // namespace ZebManager
