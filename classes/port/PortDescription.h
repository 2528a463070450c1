#pragma once

#include <cstdint>
#include <string>

#include "ethernet/EthernetPort.h"

namespace ZEB {

/// "Ethernet port 2 on ethernet controller 1"; a port number that is not known is left out.
std::string portDescription(const EthernetPort& port, std::uint32_t controllerNumber);

/// A MAC address as CIM has it: without colons.
std::string withoutColons(std::string address);

}  // namespace ZEB
