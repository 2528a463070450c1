#include "netlink/FamilyDecoder.h"

#include <linux/genetlink.h>

namespace ZEB::ethernet {
namespace {

using Kind = AttributeKind;

constexpr AttributePolicy kFamilyPolicy{{CTRL_ATTR_FAMILY_ID, Kind::U16},
                                        {CTRL_ATTR_MCAST_GROUPS, Kind::Nested}};

constexpr AttributePolicy kGroupPolicy{{CTRL_ATTR_MCAST_GRP_NAME, Kind::Text},
                                       {CTRL_ATTR_MCAST_GRP_ID, Kind::U32}};

}  // namespace

std::optional<GenericFamily> decodeFamily(Bytes payload, std::string_view groupName) {
  const auto header = leading<genlmsghdr>(payload);
  if (!header || header->cmd != CTRL_CMD_NEWFAMILY) return std::nullopt;
  const Attributes attributes(following(payload, sizeof *header), kFamilyPolicy);
  const auto id = attributes.u16(CTRL_ATTR_FAMILY_ID);
  if (!id) return std::nullopt;
  GenericFamily family{*id, std::nullopt};
  // The groups are a list: their attribute numbers are positions.
  forEachAttribute(attributes.bytes(CTRL_ATTR_MCAST_GROUPS).value_or(Bytes{}),
                   [&](std::uint16_t, Bytes group) {
                     const Attributes named(group, kGroupPolicy);
                     if (named.text(CTRL_ATTR_MCAST_GRP_NAME) == groupName)
                       family.group = named.u32(CTRL_ATTR_MCAST_GRP_ID);
                   });
  return family;
}

}  // namespace ZEB::ethernet
