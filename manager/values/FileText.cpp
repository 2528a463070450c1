#include "values/FileText.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <sstream>

#include "values/ManagerError.h"

namespace ZebManager {

std::string textOfFile(const std::string& file) {
  const std::ifstream in(file, std::ios::binary);
  if (!in) throw ManagerError("cannot read " + file + ": " + std::strerror(errno));
  std::ostringstream content;
  content << in.rdbuf();
  return content.str();
}

}  // namespace ZebManager
