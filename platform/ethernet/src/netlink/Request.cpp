#include "netlink/Request.h"

#include <libmnl/libmnl.h>

#include <cstring>

namespace ZEB::ethernet {

Request::Request(std::uint16_t type, std::uint16_t flags) {
  nlmsghdr* header = mnl_nlmsg_put_header(_buffer.data());
  header->nlmsg_type = type;
  header->nlmsg_flags = static_cast<std::uint16_t>(NLM_F_REQUEST | flags);
}

nlmsghdr* Request::message() {
  return reinterpret_cast<nlmsghdr*>(_buffer.data());
}

void Request::appendFixed(const void* value, std::size_t size) {
  std::memcpy(mnl_nlmsg_put_extra_header(message(), size), value, size);
}

Request& Request::u32(std::uint16_t type, std::uint32_t value) {
  mnl_attr_put_u32(message(), type, value);
  return *this;
}

Request& Request::text(std::uint16_t type, const char* value) {
  mnl_attr_put_strz(message(), type, value);
  return *this;
}

Request& Request::flag(std::uint16_t type) {
  mnl_attr_put(message(), type, 0, nullptr);
  return *this;
}

Request& Request::beginNest(std::uint16_t type) {
  const nlattr* nest = mnl_attr_nest_start(message(), type);
  _nests.push_back(static_cast<std::size_t>(reinterpret_cast<const std::byte*>(nest) - _buffer.data()));
  return *this;
}

Request& Request::endNest() {
  mnl_attr_nest_end(message(), reinterpret_cast<nlattr*>(_buffer.data() + _nests.back()));
  _nests.pop_back();
  return *this;
}

Bytes Request::bytes(std::uint32_t sequence) {
  message()->nlmsg_seq = sequence;
  return Bytes(_buffer).first(message()->nlmsg_len);
}

}  // namespace ZEB::ethernet
