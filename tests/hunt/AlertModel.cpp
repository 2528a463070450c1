#include "AlertModel.h"

#include <algorithm>

namespace ZEB::test {
namespace {

// CIM's numbers.
constexpr int kOK = 2, kDegraded = 3, kError = 6, kDormant = 15;

int linkStatus(const Machine::Interface& interface) {
  if (!interface.up) return kDormant;
  return interface.carrier ? kOK : kError;
}

const char* statusText(int status) {
  switch (status) {
    case kOK:
      return "OK";
    case kDegraded:
      return "Degraded";
    case kError:
      return "Error";
    default:
      return "Dormant";
  }
}

bool isFault(int status) {
  return status == kDegraded || status == kError;
}

}  // namespace

AlertModel::AlertModel(const Machine& machine) : _remembered(stateOf(machine)) {}

AlertModel::State AlertModel::stateOf(const Machine& machine) {
  State state;
  for (const auto& [number, interface] : machine.interfaces) {
    const Identity identity{number, interface.name};
    if (interface.kind == Machine::Kind::Port) state.ports[identity] = {linkStatus(interface)};
    if (interface.kind != Machine::Kind::Team) continue;
    Team team{.raw = kDormant, .status = kDormant, .members = {}};
    std::size_t up = 0;
    for (const std::uint32_t member : machine.membersOf(number)) {
      const auto& port = machine.interfaces.at(member);
      const int status = linkStatus(port);
      up += status == kOK;
      team.members.push_back({port.name, status,
                              status != kOK ? "Failed"
                              : port.backup ? "Backup"
                                            : "Active"});
    }
    if (interface.up) team.raw = up == 0 ? kError : up == team.members.size() ? kOK : kDegraded;
    team.status = team.raw;
    state.teams[identity] = std::move(team);
  }
  return state;
}

bool AlertModel::eventBetween(const State& before, const State& now) {
  const auto portChanged = [&](const auto& entry) {
    const auto old = std::ranges::find(before.ports, entry.first.first,
                                       [](const auto& known) { return known.first.first; });
    return old != before.ports.end() && old->second.status != entry.second.status;
  };
  const auto teamChanged = [&](const auto& entry) {
    const auto old = before.teams.find(entry.first);
    return old != before.teams.end() &&
           (old->second.raw != entry.second.raw || old->second.members != entry.second.members);
  };
  return std::ranges::any_of(now.ports, portChanged) || std::ranges::any_of(now.teams, teamChanged);
}

void AlertModel::addPresence(std::vector<Alert>& alerts, const State& now) const {
  for (const auto& [identity, team] : _remembered.teams) {
    if (!now.teams.contains(identity))
      alerts.push_back({12, "The Ethernet Team " + identity.second + " is no longer available"});
  }
  for (const auto& [identity, team] : now.teams) {
    if (!_remembered.teams.contains(identity))
      alerts.push_back({11, "New Ethernet Team " + identity.second + " is detected"});
  }
}

void AlertModel::addPort(std::vector<Alert>& alerts, const std::string& detail, int before, int now) {
  if (before == now) return;
  if (isFault(now)) {
    alerts.push_back({before == kOK ? 2 : 1, detail});
  } else if (now == kDormant) {
    alerts.push_back({21, detail});
  } else {
    alerts.push_back({before == kDormant ? 20 : 3, detail});
  }
}

void AlertModel::addTeam(std::vector<Alert>& alerts, const std::string& name, const Team& before,
                         const Team& now) {
  const std::string team = "Ethernet Team " + name;
  if (before.status != now.status) {
    if (isFault(now.status) && before.status == kOK) alerts.push_back({2, team + " has lost connectivity"});
    if (isFault(now.status) && before.status != kOK) alerts.push_back({1, team + " has failed"});
    if (now.status == kDormant) alerts.push_back({21, team + " has been deactivated"});
    if (now.status == kOK && isFault(before.status))
      alerts.push_back({3, "The connectivity of " + team + " has restored"});
    if (now.status == kOK && before.status == kDormant) alerts.push_back({20, team + " has been activated"});
  }
  const auto named = [](const std::vector<Member>& members, const std::string& wanted) {
    return std::ranges::find(members, wanted, &Member::name);
  };
  for (const Member& old : before.members) {
    const auto current = named(now.members, old.name);
    const std::string of = " of member " + old.name + " of " + team + " has changed from ";
    if (current == now.members.end()) {
      alerts.push_back({8, "Member " + old.name + " has been dropped from " + team});
      continue;
    }
    if (old.role != current->role) alerts.push_back({9, "The role" + of + old.role + " to " + current->role});
    if (old.status != current->status)
      alerts.push_back(
          {10, "The status" + of + statusText(old.status) + " to " + statusText(current->status)});
  }
  for (const Member& current : now.members) {
    if (named(before.members, current.name) == before.members.end())
      alerts.push_back({7, "New Member " + current.name + " has been added into " + team});
  }
  const auto count = [](const std::vector<Member>& members, auto wanted) {
    return static_cast<int>(std::ranges::count_if(members, wanted));
  };
  const auto isOK = [](const Member& member) { return member.status == kOK; };
  const auto isActive = [](const Member& member) { return member.role == "Active"; };
  const int okBefore = count(before.members, isOK), okNow = count(now.members, isOK);
  const int members = static_cast<int>(now.members.size());
  const std::string redundancy = "The redundancy of " + team;
  if (okNow > okBefore && okNow != members) alerts.push_back({6, redundancy + " has increased"});
  if (okNow > okBefore && okNow == members) alerts.push_back({15, redundancy + " has fully restored"});
  if (okNow < okBefore && okNow > 1) alerts.push_back({4, redundancy + " has decreased"});
  if (okNow < okBefore && okNow == 1) alerts.push_back({5, redundancy + " has lost"});
  if (okNow < okBefore && okNow == 0) alerts.push_back({16, "The " + team + " has failed"});
  const int activeBefore = count(before.members, isActive), activeNow = count(now.members, isActive);
  if (activeBefore != activeNow)
    alerts.push_back({13, "Active Member Count of " + team + " Changed from " + std::to_string(activeBefore) +
                              " to " + std::to_string(activeNow)});
}

std::vector<Alert> AlertModel::pass(const Machine& machine) {
  State now = stateOf(machine);
  std::vector<Alert> alerts;
  addPresence(alerts, now);
  const bool event = eventBetween(_remembered, now);
  for (auto& [identity, team] : now.teams) {
    const auto before = _remembered.teams.find(identity);
    if (before == _remembered.teams.end()) continue;
    // One that has just turned degraded counts as in error, and stays so while it is degraded.
    if (event && team.raw == kDegraded && before->second.status != kDegraded) team.status = kError;
    if (!event) team.status = before->second.status;
    if (event) addTeam(alerts, identity.second, before->second, team);
  }
  for (const auto& [identity, port] : now.ports) {
    const auto before = _remembered.ports.find(identity);
    if (before == _remembered.ports.end() || !event) continue;
    addPort(alerts, Machine::addressOf(identity.first), before->second.status, port.status);
  }
  _remembered = std::move(now);
  std::ranges::sort(alerts);
  return alerts;
}

}  // namespace ZEB::test
