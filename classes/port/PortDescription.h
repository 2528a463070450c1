#pragma once

#include <cstdint>
#include <string>

namespace ZEB {

/// "Ethernet port 2 on ethernet controller 1"; a port number of 0 is not known and left out.
std::string portDescription(std::uint16_t portNumber, std::uint32_t controllerNumber);

/// A MAC address as CIM has it: without colons.
std::string withoutColons(std::string address);

}  // namespace ZEB
