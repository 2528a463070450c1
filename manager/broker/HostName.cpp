#include "broker/HostName.h"

#include <unistd.h>

#include <array>

namespace ZebManager {
namespace {

std::string readHostName() {
  std::array<char, 256> name{};
  return gethostname(name.data(), name.size() - 1) == 0 ? name.data() : "localhost";
}

}  // namespace

const std::string& hostName() {
  static const std::string name = readHostName();
  return name;
}

}  // namespace ZebManager
