#pragma once

#include <linux/netlink.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>
#include <vector>

namespace ZEB::ethernet::test {

/// Puts netlink messages together byte by byte, also ones that the kernel would never send.
class MessageBuilder {
 public:
  template <class T>
  MessageBuilder& raw(const T& value) {
    return append(&value, sizeof value);
  }
  MessageBuilder& append(const void* data, std::size_t size) {
    const auto* bytes = static_cast<const std::byte*>(data);
    _bytes.insert(_bytes.end(), bytes, bytes + size);
    return *this;
  }

  /// An attribute with that payload, padded to four bytes.
  MessageBuilder& attribute(std::uint16_t type, const void* data, std::size_t size) {
    raw(nlattr{static_cast<std::uint16_t>(sizeof(nlattr) + size), type});
    append(data, size);
    _bytes.resize((_bytes.size() + 3) & ~std::size_t{3});
    return *this;
  }
  template <class T>
  MessageBuilder& number(std::uint16_t type, T value) {
    return attribute(type, &value, sizeof value);
  }
  MessageBuilder& text(std::uint16_t type, std::string_view value) {
    return attribute(type, std::string(value).c_str(), value.size() + 1);
  }
  MessageBuilder& bytes(std::uint16_t type, std::initializer_list<int> values) {
    std::vector<std::uint8_t> payload;
    for (const int value : values) payload.push_back(static_cast<std::uint8_t>(value));
    return attribute(type, payload.data(), payload.size());
  }
  MessageBuilder& nest(std::uint16_t type, const MessageBuilder& inner) {
    return attribute(static_cast<std::uint16_t>(type | NLA_F_NESTED), inner._bytes.data(),
                     inner._bytes.size());
  }

  /// The whole as the payload of a netlink message.
  MessageBuilder message(std::uint16_t type, std::uint32_t sequence, std::uint16_t flags = 0) const {
    MessageBuilder whole;
    nlmsghdr header{};
    header.nlmsg_len = static_cast<std::uint32_t>(sizeof header + _bytes.size());
    header.nlmsg_type = type;
    header.nlmsg_flags = flags;
    header.nlmsg_seq = sequence;
    whole.raw(header).append(_bytes.data(), _bytes.size());
    whole._bytes.resize((whole._bytes.size() + 3) & ~std::size_t{3});
    return whole;
  }

  MessageBuilder& operator+=(const MessageBuilder& more) {
    return append(more._bytes.data(), more._bytes.size());
  }

  std::span<const std::byte> view() const { return _bytes; }
  std::vector<std::byte>& data() { return _bytes; }

 private:
  std::vector<std::byte> _bytes;
};

}  // namespace ZEB::ethernet::test
