#include "classes/port/PortDescription.h"

namespace ZEB {

std::string portDescription(std::uint16_t portNumber, std::uint32_t controllerNumber) {
  const std::string number = portNumber != 0 ? std::to_string(portNumber) + " " : std::string();
  return "Ethernet port " + number + "on ethernet controller " + std::to_string(controllerNumber);
}

std::string withoutColons(std::string address) {
  std::erase(address, ':');
  return address;
}

}  // namespace ZEB
