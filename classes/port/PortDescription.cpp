#include "classes/port/PortDescription.h"

#include "classes/port/Known.h"

namespace ZEB {

std::string portDescription(const EthernetPort& port, std::uint32_t controllerNumber) {
  const std::uint16_t portNumber = known(port, &EthernetPort::getPortNumber).value_or(0);
  const std::string number = portNumber != 0 ? std::to_string(portNumber) + " " : std::string();
  return "Ethernet port " + number + "on ethernet controller " + std::to_string(controllerNumber);
}

std::string withoutColons(std::string address) {
  std::erase(address, ':');
  return address;
}

}  // namespace ZEB
