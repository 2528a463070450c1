// Where a request comes from.
#pragma once

#include <sys/socket.h>

#include <string>

namespace ZebManager {

struct ClientAddress {
  explicit ClientAddress(const sockaddr& address);

  std::string host;  ///< numeric
  /// What is counted as one client: an address of IPv4, a network of 64 bits of IPv6, this machine.
  std::string client;
  bool loopback = false;
};

}  // namespace ZebManager
