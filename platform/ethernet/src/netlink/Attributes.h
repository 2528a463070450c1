#pragma once

#include <linux/netlink.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <optional>
#include <span>
#include <string>
#include <type_traits>
#include <utility>

namespace ZEB::ethernet {

using Bytes = std::span<const std::byte>;

/// What a decoder expects of an attribute. Fixed kinds have exactly the size of their type.
enum class AttributeKind : std::uint8_t { Ignored, U8, U16, U32, U64, Text, Binary, Nested, Flag };

/// The attributes that a decoder reads, by number; all others are passed over.
class AttributePolicy {
 public:
  static constexpr std::size_t kMaximum = 80;

  struct Entry {
    std::uint16_t type;
    AttributeKind kind;
  };
  constexpr AttributePolicy(std::initializer_list<Entry> entries) {
    for (const Entry& entry : entries) _kinds.at(entry.type) = entry.kind;
  }

  constexpr AttributeKind kind(std::uint16_t type) const {
    return type < kMaximum ? _kinds[type] : AttributeKind::Ignored;
  }

 private:
  std::array<AttributeKind, kMaximum> _kinds{};
};

/// The attributes of one message or nest, checked against a policy. What does not fit the policy is absent; a
/// broken attribute ends the list; of several with one number the last counts. Holds views of the bytes.
class Attributes {
 public:
  Attributes(Bytes bytes, const AttributePolicy& policy);

  std::optional<std::uint8_t> u8(std::uint16_t type) const { return number<std::uint8_t>(type); }
  std::optional<std::uint16_t> u16(std::uint16_t type) const { return number<std::uint16_t>(type); }
  std::optional<std::uint32_t> u32(std::uint16_t type) const { return number<std::uint32_t>(type); }
  std::optional<std::uint64_t> u64(std::uint16_t type) const { return number<std::uint64_t>(type); }
  /// Up to the first zero byte.
  std::optional<std::string> text(std::uint16_t type) const;
  /// The payload of a binary or nested attribute.
  std::optional<Bytes> bytes(std::uint16_t type) const;
  bool has(std::uint16_t type) const { return bytes(type).has_value(); }

 private:
  template <class T>
  std::optional<T> number(std::uint16_t type) const {
    const auto payload = bytes(type);
    T value;
    if (!payload || payload->size() != sizeof value) return std::nullopt;
    std::memcpy(&value, payload->data(), sizeof value);
    return value;
  }

  struct Payload {
    const std::byte* data;
    std::size_t size;
  };
  std::array<bool, AttributePolicy::kMaximum> _present{};
  std::array<Payload, AttributePolicy::kMaximum> _payloads;  ///< of those that are present; else anything
};

/// A fixed structure at the beginning of a message; nothing when the message is shorter.
template <class T>
std::optional<T> leading(Bytes bytes) {
  static_assert(std::is_trivially_copyable_v<T>);
  if (bytes.size() < sizeof(T)) return std::nullopt;
  T value;
  std::memcpy(&value, bytes.data(), sizeof value);
  return value;
}

/// What follows a fixed structure of that size, where attributes begin.
inline Bytes following(Bytes bytes, std::size_t size) {
  const std::size_t aligned = (size + 3) & ~std::size_t{3};
  return bytes.subspan(std::min(aligned, bytes.size()));
}

/// Calls `visit(type, payload)` for each attribute, up to the end or the first broken one.
template <class Visit>
void forEachAttribute(Bytes bytes, Visit visit) {
  while (const auto header = leading<nlattr>(bytes)) {
    if (header->nla_len < sizeof(nlattr) || header->nla_len > bytes.size()) return;
    visit(static_cast<std::uint16_t>(header->nla_type & NLA_TYPE_MASK),
          bytes.subspan(sizeof(nlattr), header->nla_len - sizeof(nlattr)));
    bytes = following(bytes, header->nla_len);
  }
}

}  // namespace ZEB::ethernet
