#include "metrics/Families.h"

namespace ZebManager {
namespace {

using Kind = MetricKind;

std::string digitsOf(const std::optional<std::uint64_t>& number) {
  return number ? std::to_string(*number) : std::string();
}

MetricValue numberOf(const std::optional<bool>& flag) {
  return flag ? MetricValue(*flag ? 1 : 0) : std::nullopt;
}

constexpr std::array kPartnerIdentity = {
    LabelRow<PortPartner>{"device", [](const PortPartner& p) { return p.device; }},
};

constexpr std::array kPartnerNumbers = {
    NumberRow<PortPartner>{{"zeb_port_partner_max_speed_bytes", Kind::Gauge, "bytes",
                            "Largest speed that the other end of the cable offers, in bytes per second.",
                            "ETHTOOL_A_LINKMODES_PEER"},
                           [](const PortPartner& p) { return bytesOf(p.speed); }},
    NumberRow<PortPartner>{{"zeb_port_common_max_speed_bytes", Kind::Gauge, "bytes",
                            "Largest speed that both ends of the cable can do, in bytes per second.",
                            "ETHTOOL_A_LINKMODES_OURS, ETHTOOL_A_LINKMODES_PEER"},
                           [](const PortPartner& p) { return bytesOf(p.common); }},
};

constexpr std::array kLacpTeamIdentity = {
    LabelRow<LacpTeamReading>{"device", [](const LacpTeamReading& t) { return t.device; }},
};

constexpr std::array kLacpTeamLabels = {
    LabelRow<LacpTeamReading>{"aggregator", [](const LacpTeamReading& t) { return digitsOf(t.aggregator); }},
    LabelRow<LacpTeamReading>{"actor_key", [](const LacpTeamReading& t) { return digitsOf(t.actorKey); }},
    LabelRow<LacpTeamReading>{"partner", [](const LacpTeamReading& t) { return t.partner; }},
    LabelRow<LacpTeamReading>{"partner_key", [](const LacpTeamReading& t) { return digitsOf(t.partnerKey); }},
};

using LacpTeamRow = NumberRow<LacpTeamReading>;

constexpr std::array kLacpTeamNumbers = {
    LacpTeamRow{{"zeb_team_lacp_partner", Kind::Gauge, "",
                 "Whether somebody at the other end of a team speaks LACP.", "IFLA_BOND_AD_INFO_PARTNER_MAC"},
                [](const LacpTeamReading& t) { return MetricValue(t.partner.empty() ? 0 : 1); }},
    LacpTeamRow{
        {"zeb_team_lacp_ports", Kind::Gauge, "",
         "Members in the aggregator that carries the traffic of a team.", "IFLA_BOND_AD_INFO_NUM_PORTS"},
        [](const LacpTeamReading& t) { return MetricValue(t.ports); }},
};

constexpr std::array kLacpMemberIdentity = {
    LabelRow<LacpMemberReading>{"team", [](const LacpMemberReading& m) { return m.team; }},
    LabelRow<LacpMemberReading>{"device", [](const LacpMemberReading& m) { return m.device; }},
};

using LacpMemberRow = NumberRow<LacpMemberReading>;

constexpr std::array kLacpMemberNumbers = {
    LacpMemberRow{
        {"zeb_team_member_lacp_aggregator", Kind::Gauge, "",
         "Number of the aggregator that a port is in; ports that carry traffic together are in one.",
         "IFLA_BOND_SLAVE_AD_AGGREGATOR_ID"},
        [](const LacpMemberReading& m) { return MetricValue(m.aggregator); }},
    LacpMemberRow{{"zeb_team_member_lacp_partner", Kind::Gauge, "",
                   "Whether a port has heard LACP from its other end lately.",
                   "IFLA_BOND_SLAVE_AD_ACTOR_OPER_PORT_STATE"},
                  [](const LacpMemberReading& m) { return numberOf(m.hasPartner()); }},
    LacpMemberRow{{"zeb_team_member_lacp_synchronized", Kind::Gauge, "",
                   "Whether both ends have put a port into the aggregator that it belongs to.",
                   "IFLA_BOND_SLAVE_AD_ACTOR_OPER_PORT_STATE, IFLA_BOND_SLAVE_AD_PARTNER_OPER_PORT_STATE"},
                  [](const LacpMemberReading& m) { return numberOf(m.isSynchronized()); }},
};

}  // namespace

MetricTable<PortPartner> portPartnerMetrics() {
  return {kPartnerIdentity, std::nullopt, {}, kPartnerNumbers};
}

MetricTable<LacpTeamReading> lacpTeamMetrics() {
  return {kLacpTeamIdentity,
          MetricFamily{"zeb_team_lacp_info", Kind::Info, "",
                       "Aggregator that carries the traffic of a team, and who is at its other end.",
                       "IFLA_BOND_AD_INFO"},
          kLacpTeamLabels, kLacpTeamNumbers};
}

MetricTable<LacpMemberReading> lacpMemberMetrics() {
  return {kLacpMemberIdentity, std::nullopt, {}, kLacpMemberNumbers};
}

}  // namespace ZebManager
