#include "netlink/Attributes.h"

namespace ZEB::ethernet {
namespace {

/// The size that an attribute of this kind must have; nothing when any will do.
std::optional<std::size_t> requiredSize(AttributeKind kind) {
  switch (kind) {
    case AttributeKind::U8:
      return 1;
    case AttributeKind::U16:
      return 2;
    case AttributeKind::U32:
      return 4;
    case AttributeKind::U64:
      return 8;
    default:
      return std::nullopt;
  }
}

}  // namespace

Attributes::Attributes(Bytes bytes, const AttributePolicy& policy) {
  forEachAttribute(bytes, [&](std::uint16_t type, Bytes payload) {
    const AttributeKind kind = policy.kind(type);
    if (kind == AttributeKind::Ignored) return;
    if (const auto size = requiredSize(kind); size && payload.size() != *size) return;
    _payloads[type] = {payload.data(), payload.size()};
    _present[type] = true;
  });
}

std::optional<std::string> Attributes::text(std::uint16_t type) const {
  const auto payload = bytes(type);
  if (!payload) return std::nullopt;
  const auto* begin = reinterpret_cast<const char*>(payload->data());
  return std::string(begin, std::find(begin, begin + payload->size(), '\0'));
}

std::optional<Bytes> Attributes::bytes(std::uint16_t type) const {
  if (type >= _present.size() || !_present[type]) return std::nullopt;
  return Bytes(_payloads[type].data, _payloads[type].size);
}

}  // namespace ZEB::ethernet
