#include "values/FileText.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <sstream>

#include "values/ManagerError.h"

namespace ZebManager {

std::string textOfFile(const std::string& file) {
  std::ifstream in(file, std::ios::binary);
  // An empty file is no failure; a folder can be opened and not be read.
  in.peek();
  if (!in.is_open() || in.bad()) throw ManagerError("cannot read " + file + ": " + std::strerror(errno));
  std::ostringstream content;
  content << in.rdbuf();
  return content.str();
}

}  // namespace ZebManager
