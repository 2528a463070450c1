#include "recorded/Anonymizer.h"

#include <functional>
#include <map>
#include <string_view>

#include "recorded/Describe.h"

namespace ZEB::ethernet {
namespace {

std::uint64_t scramble(std::uint64_t value) {
  value += 0x9E3779B97F4A7C15u;
  value = (value ^ value >> 30) * 0xBF58476D1CE4E5B9u;
  value = (value ^ value >> 27) * 0x94D049BB133111EBu;
  return value ^ value >> 31;
}

bool bitOf(const IpAddress& address, unsigned bit) {
  return (address.bytes[bit / 8] >> (7 - bit % 8) & 1) != 0;
}

bool isLoopback(const IpAddress& address) {
  return address.family == IpFamily::V4 ? address.bytes[0] == 127 : toText(address) == "::1";
}

unsigned keptBits(const IpAddress& address) {
  const bool v4 = address.family == IpFamily::V4;
  if (isLoopback(address)) return address.width();
  if (isLinkLocal(address)) return v4 ? 16 : 64;
  return v4 ? 8 : 16;
}

/// Whether a bit turns over depends on the bits before it alone, so what two addresses have in common stays.
IpAddress replacement(const IpAddress& address, std::uint64_t key) {
  IpAddress replaced = address;
  std::uint64_t path = scramble(key ^ static_cast<std::uint64_t>(address.family));
  for (unsigned bit = 0; bit < address.width(); ++bit) {
    if (bit >= keptBits(address) && (scramble(path) & 1) != 0) {
      replaced.bytes[bit / 8] = static_cast<std::uint8_t>(replaced.bytes[bit / 8] ^ 0x80u >> bit % 8);
    }
    path = scramble(path ^ (bitOf(address, bit) ? 2u : 1u));
  }
  return replaced;
}

/// An address as it stands in the names of interfaces.
std::string digitsOf(const HardwareAddress& address) {
  std::string digits = toText(address);
  std::erase(digits, ':');
  return digits;
}

class Replacer {
 public:
  explicit Replacer(std::uint64_t key) : _key(key) {}

  template <class T>
  void operator()(const char* key, T& value) {
    if constexpr (std::is_same_v<T, std::optional<std::string>>) {
      if (value && std::string_view(key) == "serialNumber") replaceSerial(*value);
    } else {
      replace(value);
    }
  }
  void flags(const char*, std::optional<std::uint32_t>&) {}
  void operState(const char*, std::optional<std::uint8_t>&) {}

  /// Devices without a place of their own are called after their address: "enx001a2b3c4d5e". Once every
  /// address has been seen.
  void renameAfterAddresses(std::vector<LinkFacts>& links) const {
    std::map<std::string, std::string, std::less<>> digits;
    for (const auto& [address, replaced] : _addresses) digits[digitsOf(address)] = digitsOf(replaced);
    constexpr std::size_t kDigits = 12;
    for (LinkFacts& link : links) {
      for (std::size_t at = 0; at + kDigits <= link.name.size(); ++at) {
        const auto known = digits.find(std::string_view(link.name).substr(at, kDigits));
        if (known == digits.end()) continue;
        link.name.replace(at, kDigits, known->second);
        break;
      }
    }
  }

 private:
  void replaceSerial(std::string& serial) {
    const auto [entry, added] = _serials.try_emplace(serial, "SERIAL-" + std::to_string(_serials.size() + 1));
    serial = entry->second;
  }
  void replace(HardwareAddress& address) {
    // Locally administered addresses, numbered in the order of their appearance.
    const auto number = static_cast<std::uint32_t>(_addresses.size() + 1);
    const HardwareAddress next = {0x02,
                                  0,
                                  static_cast<std::uint8_t>(number >> 24),
                                  static_cast<std::uint8_t>(number >> 16),
                                  static_cast<std::uint8_t>(number >> 8),
                                  static_cast<std::uint8_t>(number)};
    address = _addresses.try_emplace(address, next).first->second;
  }
  void replace(IpAddress& address) { address = replacement(address, _key); }
  template <class T>
  void replace(std::optional<T>& value) {
    if (value) replace(*value);
  }
  template <class T>
  void replace(std::shared_ptr<const T>& value) {
    if (!value) return;
    auto copy = std::make_shared<T>(*value);
    replace(*copy);
    value = std::move(copy);
  }
  template <class T>
  void replace(std::vector<T>& values) {
    for (T& value : values) replace(value);
  }
  template <class T>
  void replace(T& part) {
    if constexpr (requires { describe(part, *this); }) describe(part, *this);
  }

  std::uint64_t _key;
  std::map<HardwareAddress, HardwareAddress> _addresses;
  std::map<std::string, std::string> _serials;
};

}  // namespace

void anonymize(HostSnapshot& snapshot, std::uint64_t key) {
  Replacer replacer(key);
  describe(snapshot, replacer);
  replacer.renameAfterAddresses(snapshot.links);
}

}  // namespace ZEB::ethernet
