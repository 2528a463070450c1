#include <linux/fib_rules.h>
#include <linux/rtnetlink.h>
#include <sys/socket.h>

#include "netlink/RtnlDecoders.h"

namespace ZEB::ethernet {
namespace {

using Kind = AttributeKind;

constexpr AttributePolicy kRulePolicy{
    {FRA_TABLE, Kind::U32},
    {FRA_SUPPRESS_PREFIXLEN, Kind::U32},
    {FRA_L3MDEV, Kind::U8},
};

/// Instead of a length of prefixes up to which routes do not count.
constexpr std::uint32_t kSuppressesNothing = 0xFFFFFFFF;

}  // namespace

std::optional<RuleFacts> decodeRule(Bytes payload) {
  const auto header = leading<fib_rule_hdr>(payload);
  if (!header || header->action != FR_ACT_TO_TBL) return std::nullopt;
  if (header->family != AF_INET && header->family != AF_INET6) return std::nullopt;
  const Attributes attributes(following(payload, sizeof *header), kRulePolicy);
  // The prefix of a default route is shorter than any other.
  if (attributes.u32(FRA_SUPPRESS_PREFIXLEN).value_or(kSuppressesNothing) != kSuppressesNothing)
    return std::nullopt;
  const IpFamily family = header->family == AF_INET ? IpFamily::V4 : IpFamily::V6;
  if (attributes.u8(FRA_L3MDEV).value_or(0) != 0) return RuleFacts{family, RuleFacts::kTableOfVrf};
  const std::uint32_t table = attributes.u32(FRA_TABLE).value_or(header->table);
  return table == RT_TABLE_UNSPEC ? std::nullopt : std::optional(RuleFacts{family, table});
}

}  // namespace ZEB::ethernet
