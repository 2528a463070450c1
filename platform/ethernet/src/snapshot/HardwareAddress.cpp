#include "snapshot/HardwareAddress.h"

#include <algorithm>
#include <charconv>

namespace ZEB::ethernet {

std::optional<HardwareAddress> hardwareAddress(std::span<const std::byte> bytes) {
  HardwareAddress address;
  if (bytes.size() != address.size()) return std::nullopt;
  std::transform(bytes.begin(), bytes.end(), address.begin(),
                 [](std::byte byte) { return std::to_integer<std::uint8_t>(byte); });
  if (address == HardwareAddress{}) return std::nullopt;
  return address;
}

std::string toText(const HardwareAddress& address) {
  static constexpr char kDigits[] = "0123456789abcdef";
  std::string text;
  text.reserve(address.size() * 3 - 1);
  for (const std::uint8_t byte : address) {
    if (!text.empty()) text += ':';
    text += kDigits[byte >> 4];
    text += kDigits[byte & 0xF];
  }
  return text;
}

std::optional<HardwareAddress> parseHardwareAddress(std::string_view text) {
  HardwareAddress address;
  if (text.size() != address.size() * 3 - 1) return std::nullopt;
  for (std::size_t i = 0; i < address.size(); ++i) {
    const char* digits = text.data() + i * 3;
    if (std::from_chars(digits, digits + 2, address[i], 16).ptr != digits + 2) return std::nullopt;
    if (i > 0 && digits[-1] != ':') return std::nullopt;
  }
  return address;
}

}  // namespace ZEB::ethernet
