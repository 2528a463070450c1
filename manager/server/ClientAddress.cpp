#include "server/ClientAddress.h"

#include <arpa/inet.h>
#include <netinet/in.h>

#include <array>
#include <cstring>

namespace ZebManager {
namespace {

constexpr char kThisMachine[] = "this machine";
constexpr std::size_t kNetworkBytes = 8;

std::string textOf(int family, const void* address) {
  std::array<char, INET6_ADDRSTRLEN> text{};
  return inet_ntop(family, address, text.data(), text.size()) ? text.data() : "";
}

bool isLoopback(const in_addr& address) {
  return ntohl(address.s_addr) >> 24 == 127;
}

std::string networkOf(in6_addr address) {
  std::memset(&address.s6_addr[kNetworkBytes], 0, sizeof address.s6_addr - kNetworkBytes);
  return textOf(AF_INET6, &address) + "/64";
}

/// The address of IPv4 that one of IPv6 stands for.
in_addr mapped(const in6_addr& address) {
  in_addr inner{};
  std::memcpy(&inner, &address.s6_addr[12], sizeof inner);
  return inner;
}

}  // namespace

ClientAddress::ClientAddress(const sockaddr& address) {
  in_addr narrow{};
  if (address.sa_family == AF_INET6) {
    const in6_addr& wide = reinterpret_cast<const sockaddr_in6&>(address).sin6_addr;
    if (!IN6_IS_ADDR_V4MAPPED(&wide)) {
      loopback = IN6_IS_ADDR_LOOPBACK(&wide);
      host = textOf(AF_INET6, &wide);
      client = loopback ? kThisMachine : networkOf(wide);
      return;
    }
    narrow = mapped(wide);
  } else if (address.sa_family == AF_INET) {
    narrow = reinterpret_cast<const sockaddr_in&>(address).sin_addr;
  } else {
    return;
  }
  loopback = isLoopback(narrow);
  host = textOf(AF_INET, &narrow);
  client = loopback ? kThisMachine : host;
}

}  // namespace ZebManager
