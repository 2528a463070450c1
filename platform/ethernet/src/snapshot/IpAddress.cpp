#include "snapshot/IpAddress.h"

#include <arpa/inet.h>

#include <algorithm>
#include <cstring>

namespace ZEB::ethernet {
namespace {

int osFamily(IpFamily family) {
  return family == IpFamily::V4 ? AF_INET : AF_INET6;
}

}  // namespace

std::optional<IpAddress> ipAddress(std::span<const std::byte> bytes) {
  if (bytes.size() != 4 && bytes.size() != 16) return std::nullopt;
  IpAddress address{bytes.size() == 4 ? IpFamily::V4 : IpFamily::V6, {}};
  std::memcpy(address.bytes.data(), bytes.data(), bytes.size());
  return address;
}

std::string toText(const IpAddress& address) {
  char text[INET6_ADDRSTRLEN] = "";
  inet_ntop(osFamily(address.family), address.bytes.data(), text, sizeof text);
  return text;
}

std::optional<IpAddress> parseIpAddress(std::string_view text) {
  IpAddress address;
  address.family = text.find(':') == text.npos ? IpFamily::V4 : IpFamily::V6;
  if (inet_pton(osFamily(address.family), std::string(text).c_str(), address.bytes.data()) != 1)
    return std::nullopt;
  return address;
}

IpAddress netmask(unsigned prefixLength) {
  IpAddress mask;
  for (unsigned bit = 0; bit < std::min(prefixLength, mask.width()); ++bit) {
    mask.bytes[bit / 8] = static_cast<std::uint8_t>(mask.bytes[bit / 8] | 0x80u >> bit % 8);
  }
  return mask;
}

bool sameNetwork(const IpAddress& a, const IpAddress& b, unsigned prefixLength) {
  if (a.family != b.family || prefixLength > a.width()) return false;
  for (unsigned bit = 0; bit < prefixLength; bit += 8) {
    const unsigned left = prefixLength - bit;
    const unsigned mask = left >= 8 ? 0xFFu : 0xFFu << (8 - left) & 0xFFu;
    if (((a.bytes[bit / 8] ^ b.bytes[bit / 8]) & mask) != 0) return false;
  }
  return true;
}

bool isLinkLocal(const IpAddress& address) {
  return address.family == IpFamily::V4 ? address.bytes[0] == 169 && address.bytes[1] == 254
                                        : address.bytes[0] == 0xFE && (address.bytes[1] & 0xC0) == 0x80;
}

}  // namespace ZEB::ethernet
