#include "classes/team/ZEB_EthernetTeamMember.h"

#include <utility>

#include "classes/port/Escalation.h"
#include "classes/port/Known.h"
#include "classes/port/PropertyTable.h"
#include "classes/port/Subject.h"

namespace ZEB {

struct ZEB_EthernetTeamMember::Reading {
  const EthernetTeamDataObject& team;
  const EthernetPort& port;
  operationalStatus status;
};

namespace {

const AssociationClass kClass{
    .name = "ZEB_EthernetTeamMember",
    .roles = {"Collection", "Member"},
};

/// Of the two ends; empty when one is not known.
std::string both(const std::string& team, const std::string& port) {
  return team.empty() || port.empty() ? std::string() : team + " " + port;
}

operationalStatus memberStatus(const EthernetTeamDataObject& team, const EthernetPort& port) {
  const auto teamStatus = known(team, &EthernetTeamDataObject::getTeamStatus);
  const auto portStatus = known(port, &EthernetPort::getPortStatus);
  if (!teamStatus || !portStatus) return operationalStatus::Unknown;
  const bool bothOK = *teamStatus == operationalStatus::OK && *portStatus == operationalStatus::OK;
  return bothOK ? operationalStatus::OK : operationalStatus::Degraded;
}

std::optional<EthTeamMemberRoleEnum> memberRole(const EthernetTeamDataObject& team,
                                                const EthernetPort& port) {
  const auto name = known(port, &EthernetPort::getOsDeviceName);
  EthernetTeamSlave slave;
  if (!name || team.findSlaveByName(*name, slave) != 0) return std::nullopt;
  return slave.role;
}

}  // namespace

const PropertyRows<ZEB_EthernetTeamMember::Reading> ZEB_EthernetTeamMember::kProperties{
    P::uint16Array(
        "MemberOperationalStatus", [](Reading& r) { return r.status; }, always),
    P::stringArray(
        "MemberStatusDescriptions", [](Reading& r) { return opstatusToString(r.status); }, always),
    P::uint16(
        "Role", [](Reading& r) { return memberRole(r.team, r.port); }, orElse(0)),
};

ZEB_EthernetTeamMember::ZEB_EthernetTeamMember(const Logger& logger, const std::string& nameSpace,
                                               const CmpiCpp::CmpiObjectPath& team,
                                               const CmpiCpp::CmpiObjectPath& port,
                                               const EthernetTeamDataObject& teamRecord,
                                               const EthernetPort& portRecord)
    : AssociationFrame(logger, nameSpace, kClass, team, port), _team(teamRecord), _port(portRecord) {
  setSubject(both(subjectOf(kClass.name, teamRecord), subjectOf(kClass.name, portRecord)));
}

CmpiCpp::CmpiInstance ZEB_EthernetTeamMember::makeInstance() {
  CmpiCpp::CmpiInstance instance = AssociationFrame::makeInstance();
  Reading reading{_team, _port, reportedStatus()};
  kProperties.fill(instance, reading);
  return instance;
}

operationalStatus ZEB_EthernetTeamMember::reportedStatus() {
  const operationalStatus status = memberStatus(_team, _port);
  const bool asItIs = std::exchange(_memory.firstReport, false);
  return _memory.memberStatus = asItIs ? status : escalated(status, _memory.memberStatus);
}

}  // namespace ZEB
