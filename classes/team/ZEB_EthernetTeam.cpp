#include "classes/team/ZEB_EthernetTeam.h"

#include <array>
#include <sstream>

#include "classes/port/Escalation.h"
#include "classes/port/Known.h"
#include "classes/port/PropertyTable.h"
#include "classes/port/Subject.h"

namespace ZEB {
namespace {

/// What a team's mode says in terms of CIM.
struct LoadBalancing {
  std::uint16_t algorithm;  ///< "LoadBalanceAlgorithm"
  std::uint16_t typeOfSet;
  const char* other;  ///< "OtherLoadBalanceAlgorithm"; null unless the algorithm is 1, other
};

/// By the number of the bonding mode.
constexpr std::array kLoadBalancing{
    LoadBalancing{3, 3, nullptr},        // balance-rr
    LoadBalancing{0, 2, nullptr},        // active-backup
    LoadBalancing{1, 3, "balance-xor"},  //
    LoadBalancing{0, 2, nullptr},        // broadcast
    LoadBalancing{1, 3, "8023ad"},       // clients know it without a dot
    LoadBalancing{1, 3, "balance-tlb"},  //
    LoadBalancing{1, 3, "balance-alb"},
};
constexpr LoadBalancing kOtherMode{1, 3, ""};
constexpr LoadBalancing kModeNotKnown{0, 0, nullptr};

const LoadBalancing& loadBalancing(const EthernetTeamDataObject& team) {
  const auto mode = known(team, &EthernetTeamDataObject::getOperatingMode);
  if (!mode) return kModeNotKnown;
  const auto number = static_cast<std::size_t>(*mode);
  return number < kLoadBalancing.size() ? kLoadBalancing[number] : kOtherMode;
}

/// The elements of an operating mode array; none when the mode is not known.
std::vector<std::uint16_t> operatingModes(const std::optional<EthTeamModeEnum>& mode) {
  if (!mode) return {};
  if (*mode > EthTeamModeEnum::BalanceAlb) return {0};
  if (*mode >= EthTeamModeEnum::BalanceTlb) return {2, 3};
  return {2};
}

}  // namespace

struct ZEB_EthernetTeam::Reading {
  ZEB_EthernetTeam& self;
  const EthernetTeamDataObject& record;
  const LoadBalancing& balancing;

  std::string numbered(const char* text) const { return text + std::to_string(self._index); }
  std::optional<operationalStatus> status() const {
    const auto status = known(record, &EthernetTeamDataObject::getTeamStatus);
    return status ? std::optional(escalated(*status, self.lastStatus())) : std::nullopt;
  }
};

const PropertyRows<ZEB_EthernetTeam::Reading> ZEB_EthernetTeam::kProperties{
    P::string(
        "Caption", [](Reading& r) { return r.numbered("QV Network Team "); }, always),
    P::string("ElementName", sameAs("Caption")),
    P::string(
        "Description", [](Reading& r) { return r.numbered("Local Area Connection "); }, always),
    P::key("InstanceID"),
    P::uint16(
        "LoadBalanceAlgorithm", [](Reading& r) { return r.balancing.algorithm; }, always),
    P::string(
        "OtherLoadBalanceAlgorithm",
        [](Reading& r) { return r.balancing.other ? std::optional(r.balancing.other) : std::nullopt; },
        orOmit),
    P::uint16Array(
        "TypeOfSet", [](Reading& r) { return r.balancing.typeOfSet; }, always),
    P::uint32("MaxNumberSupported", &EthernetTeamDataObject::getNumberOfSlaves, orElse(0)),
    P::uint32("MinNumberNeeded", constant(1)),
    P::uint16("RedundancyStatus", &EthernetTeamDataObject::getRedundancyStatus, orOmit),
    P::uint16Array(
        "GroupOperationalStatus", [](Reading& r) { return r.status(); }, orOmit),
    P::uint64("ActiveMaximumTransmissionUnit", &EthernetTeamDataObject::getMaxFrameSize, orElse(0)),
    P::uint64("Speed", &EthernetTeamDataObject::getSpeed, orElse(0)),
    P::uint16Array("TeamCapabilities", &EthernetTeamDataObject::getCapabilities, orOmit),
    P::uint16Array("TeamEnabledCapabilities", &EthernetTeamDataObject::getEnabledCapabilities, orOmit),
    P::uint16Array(
        "TeamOperatingMode",
        [](Reading& r) { return operatingModes(known(r.record, &EthernetTeamDataObject::getOperatingMode)); },
        orOmit),
    P::uint16Array(
        "TeamCurrentOperatingMode",
        [](Reading& r) {
          return operatingModes(known(r.record, &EthernetTeamDataObject::getCurrentOperatingMode));
        },
        orOmit),
};

ZEB_EthernetTeam::ZEB_EthernetTeam(const Logger& parent, const std::string& nameSpace,
                                   const std::uint32_t& index, const EthernetTeamDataObject& team)
    : ManagedObject(parent, nameSpace, kClassName, {{"InstanceID", instanceName(kClassName, index)}}),
      StatusWatcher(Kind::Team, ManagedObject::makeObjectPath().str()),
      _index(index),
      _team(team),
      _lastState{operationalStatus::Unknown, team.getSlaves()} {
  setSubject(subjectOf(kClassName, team));
  setWatchesStatus(true);
  if (_team.getOsDeviceName(_teamName) != 0) {
    logger().error("ZEB_EthernetTeam:%d failed to call EthernetTeamDataObject::getOsDeviceName", _index);
  }
  if (_team.getTeamStatus(_lastState.status) != 0) {
    logger().error("ZEB_EthernetTeam:%d failed to call EthernetTeamDataObject::getTeamStatus", _index);
  }
}

CmpiCpp::CmpiInstance ZEB_EthernetTeam::makeInstance() {
  const EthernetTeamDataObject record = refreshed(_team);
  return kProperties.makeInstance(makeObjectPath(), {*this, record, loadBalancing(record)});
}

operationalStatus ZEB_EthernetTeam::lastStatus() {
  const std::lock_guard lock(_mutex);
  return _lastState.status;
}

ZEB_EthernetTeam::State ZEB_EthernetTeam::lastState() const {
  const std::lock_guard lock(_mutex);
  return _lastState;
}

std::any ZEB_EthernetTeam::memory() const {
  return Memory{lastState(), included()};
}

void ZEB_EthernetTeam::remember(const std::any& memory) {
  const auto& [state, wasIncluded] = std::any_cast<const Memory&>(memory);
  const std::lock_guard lock(_mutex);
  _lastState = state;
  setIncluded(wasIncluded);
}

std::string ZEB_EthernetTeam::reportOf(const State& state) {
  std::ostringstream words;
  words << static_cast<std::uint32_t>(state.status);
  for (const EthernetTeamSlave& slave : state.slaves) {
    words << ' ' << slave.name << ' ' << slave.active << ' ' << static_cast<std::uint16_t>(slave.role) << ' '
          << static_cast<std::uint32_t>(slave.status) << ' ' << slave.joining;
  }
  return words.str();
}

void ZEB_EthernetTeam::resume(const std::string& report) {
  std::istringstream words(report);
  State state;
  std::uint32_t status = 0;
  std::uint16_t role = 0;
  if (!(words >> status)) return;
  state.status = static_cast<operationalStatus>(status);
  EthernetTeamSlave slave;
  while (words >> slave.name >> slave.active >> role >> status >> slave.joining) {
    slave.role = static_cast<EthTeamMemberRoleEnum>(role);
    slave.status = static_cast<operationalStatus>(status);
    state.slaves.push_back(slave);
  }
  const std::lock_guard lock(_mutex);
  _lastState = std::move(state);
}

}  // namespace ZEB
