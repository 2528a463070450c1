#include <algorithm>

#include "metrics/Families.h"

namespace ZebManager {
namespace {

using Kind = MetricKind;

enum : std::uint64_t { kRoleActive = 1 };

MetricValue numberOf(std::size_t count) {
  return static_cast<double>(count);
}

constexpr std::array kTeamIdentity = {
    LabelRow<TreeTeam>{"device", [](const TreeTeam& t) { return deviceLabel(t); }},
};

constexpr std::array kTeamLabels = {
    LabelRow<TreeTeam>{"address", [](const TreeTeam& t) { return t.macAddress; }},
    LabelRow<TreeTeam>{"mode", [](const TreeTeam& t) { return t.mode; }},
};

using TeamRow = NumberRow<TreeTeam>;

constexpr std::array kTeamNumbers = {
    TeamRow{{"zeb_team_operational_status", Kind::Gauge, "",
             "Status of the team: 0 unknown, 2 every member up, 3 some, 6 none, 15 switched off.",
             "ZEB_EthernetTeam.GroupOperationalStatus"},
            [](const TreeTeam& t) { return MetricValue(t.status.code); }},
    TeamRow{{"zeb_team_redundancy_status", Kind::Gauge, "",
             "Redundancy of the team: 0 unknown, 2 full, 3 degraded, 4 lost, 5 overall failure.",
             "ZEB_EthernetTeam.RedundancyStatus"},
            [](const TreeTeam& t) { return MetricValue(t.redundancyCode); }},
    TeamRow{{"zeb_team_speed_bytes", Kind::Gauge, "bytes", "Speed of the team, in bytes per second.",
             "ZEB_EthernetTeam.Speed / 8"},
            [](const TreeTeam& t) {
              return t.speed == 0 ? std::nullopt : MetricValue(static_cast<double>(t.speed) / 8);
            }},
    TeamRow{{"zeb_team_mtu_bytes", Kind::Gauge, "bytes", "Largest packet that the team sends.",
             "ZEB_EthernetTeam.ActiveMaximumTransmissionUnit"},
            [](const TreeTeam& t) {
              return t.mtu == 0 ? std::nullopt : MetricValue(static_cast<double>(t.mtu));
            }},
    TeamRow{{"zeb_team_members", Kind::Gauge, "", "Ports that are members of the team.",
             "number of ZEB_EthernetTeamMember"},
            [](const TreeTeam& t) { return numberOf(t.members.size()); }},
    TeamRow{{"zeb_team_members_active", Kind::Gauge, "", "Members that carry traffic.",
             "number of ZEB_EthernetTeamMember whose Role is 1"},
            [](const TreeTeam& t) {
              return numberOf(static_cast<std::size_t>(
                  std::ranges::count(t.members, std::optional(kRoleActive), &TreeMember::roleCode)));
            }},
};

constexpr std::array kMemberIdentity = {
    LabelRow<MemberReading>{"team", [](const MemberReading& m) { return deviceLabel(*m.team); }},
    LabelRow<MemberReading>{
        "device", [](const MemberReading& m) { return deviceLabel(m.member->port, m.member->path); }},
};

using MemberRow = NumberRow<MemberReading>;

constexpr std::array kMemberNumbers = {
    MemberRow{{"zeb_team_member_role", Kind::Gauge, "",
               "Role of a port in its team: 0 unknown, 1 active, 2 backup, 3 failed.",
               "ZEB_EthernetTeamMember.Role"},
              [](const MemberReading& m) { return MetricValue(m.member->roleCode); }},
    MemberRow{{"zeb_team_member_operational_status", Kind::Gauge, "",
               "Status of a port as a member: 0 unknown, 2 OK, 3 degraded, 6 no link, 15 switched off.",
               "ZEB_EthernetTeamMember.MemberOperationalStatus"},
              [](const MemberReading& m) { return MetricValue(m.member->memberStatus.code); }},
};

constexpr std::array kVlanIdentity = {
    LabelRow<VlanReading>{"device", [](const VlanReading& v) { return deviceLabel(*v.vlan); }},
};

constexpr std::array kVlanLabels = {
    LabelRow<VlanReading>{"carrier", [](const VlanReading& v) { return v.carrier; }},
    LabelRow<VlanReading>{"vlan", [](const VlanReading& v) { return std::to_string(v.vlan->id); }},
};

using VlanRow = NumberRow<VlanReading>;

constexpr std::array kVlanNumbers = {
    VlanRow{{"zeb_vlan_operational_status", Kind::Gauge, "",
             "Status of the interface of a VLAN: 0 unknown, 2 OK, 3 degraded, 6 no link, 15 switched off.",
             "ZEB_EthernetLANEndpoint.OperationalStatus"},
            [](const VlanReading& v) { return MetricValue(v.vlan->status.code); }},
};

constexpr std::array kGatewayIdentity = {
    LabelRow<GatewayReading>{"device", [](const GatewayReading& g) { return g.device; }},
    LabelRow<GatewayReading>{"gateway", [](const GatewayReading& g) { return g.gateway; }},
};

}  // namespace

MetricTable<TreeTeam> teamMetrics() {
  return {kTeamIdentity,
          MetricFamily{"zeb_team_info", Kind::Info, "", "What a team is: its address and mode.",
                       "ZEB_EthernetTeam"},
          kTeamLabels, kTeamNumbers};
}

MetricTable<MemberReading> memberMetrics() {
  return {kMemberIdentity, std::nullopt, {}, kMemberNumbers};
}

MetricTable<VlanReading> vlanMetrics() {
  return {kVlanIdentity,
          MetricFamily{
              "zeb_vlan_info", Kind::Info, "", "What a VLAN is: its number and who carries it.",
              "ZEB_EthernetLANEndpoint.VLANId, ZEB_EthernetPortToLANEndpoint, ZEB_EthernetTeamToLANEndpoint"},
          kVlanLabels, kVlanNumbers};
}

MetricTable<GatewayReading> gatewayMetrics() {
  return {kGatewayIdentity,
          MetricFamily{"zeb_gateway_info", Kind::Info, "", "A gateway that is reached from an interface.",
                       "ZEB_EthernetRemoteServiceAccessPoint.AccessInfo"},
          {},
          {}};
}

}  // namespace ZebManager
