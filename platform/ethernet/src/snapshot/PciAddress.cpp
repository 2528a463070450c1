#include "snapshot/PciAddress.h"

#include <charconv>
#include <cstdio>

namespace ZEB::ethernet {
namespace {

template <class T>
bool parseHex(std::string_view text, T& value) {
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value, 16);
  return result.ec == std::errc() && result.ptr == text.data() + text.size();
}

}  // namespace

std::string toText(const PciAddress& address) {
  char text[24];
  std::snprintf(text, sizeof text, "%04x:%02x:%02x.%x", address.domain, address.bus, address.device,
                address.function);
  return text;
}

std::optional<PciAddress> parsePciAddress(std::string_view text) {
  PciAddress address;
  const auto bus = text.find(':');
  if (bus == text.npos || text.size() != bus + 8 || text[bus + 3] != ':' || text[bus + 6] != '.')
    return std::nullopt;
  const bool good = parseHex(text.substr(0, bus), address.domain) &&
                    parseHex(text.substr(bus + 1, 2), address.bus) &&
                    parseHex(text.substr(bus + 4, 2), address.device) &&
                    parseHex(text.substr(bus + 7, 1), address.function);
  return good ? std::optional(address) : std::nullopt;
}

}  // namespace ZEB::ethernet
