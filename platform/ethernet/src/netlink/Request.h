#pragma once

#include <cstdint>
#include <vector>

#include "netlink/Attributes.h"

namespace ZEB::ethernet {

/// One netlink request under construction.
class Request {
 public:
  /// `flags` beside NLM_F_REQUEST, which is always set.
  Request(std::uint16_t type, std::uint16_t flags);

  /// The family's fixed header, first of all.
  template <class Header>
  Request& header(const Header& value) {
    appendFixed(&value, sizeof value);
    return *this;
  }
  Request& u32(std::uint16_t type, std::uint32_t value);
  Request& text(std::uint16_t type, const char* value);
  Request& flag(std::uint16_t type);
  /// Opens a nest that `endNest` closes; nests may nest.
  Request& beginNest(std::uint16_t type);
  Request& endNest();

  /// The finished message, with this sequence number.
  Bytes bytes(std::uint32_t sequence);

 private:
  void appendFixed(const void* value, std::size_t size);
  struct nlmsghdr* message();

  // Every request here is far shorter; libmnl fills in place.
  alignas(8) std::array<std::byte, 512> _buffer{};
  std::vector<std::size_t> _nests;
};

}  // namespace ZEB::ethernet
