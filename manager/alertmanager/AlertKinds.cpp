#include "alertmanager/AlertKinds.h"

#include <algorithm>
#include <array>

namespace ZebManager {
namespace {

enum : unsigned {
  kConnectivityLost = 1,
  kTeamFailed = 2,
  kRedundancyLost = 4,
  kMemberFailed = 8,
  kInterfaceGone = 16,
};

bool isFailing(const TreeStatus& status) {
  constexpr std::uint64_t kDegraded = 3, kError = 6;
  return status.code == kDegraded || status.code == kError;
}

template <class Part>
const Part* partNamed(const std::vector<Part>& parts, const std::string& name) {
  const auto found = std::ranges::find(parts, name, &Part::name);
  return found == parts.end() ? nullptr : &*found;
}

/// A port without a name goes by its path.
const TreePort* portNamed(const Tree& machine, const std::string& name) {
  for (const TreeCard& card : machine.cards) {
    for (const TreePort& port : card.ports) {
      if (port.name == name || port.path == name) return &port;
    }
  }
  return nullptr;
}

// What is no longer there cannot be ill.

bool hasConnectivity(const OpenAlert& alert, const Tree& machine, DayTime) {
  if (!alert.identity.team.empty()) {
    const TreeTeam* const team = partNamed(machine.teams, alert.identity.team);
    return !team || (team->status.code && !isFailing(team->status));
  }
  const TreePort* const port = portNamed(machine, alert.identity.interface);
  return !port || (port->status.code && !isFailing(port->status));
}

constexpr std::uint64_t kRedundancyLostCode = 4, kOverallFailureCode = 5;

bool hasWorkingMember(const OpenAlert& alert, const Tree& machine, DayTime) {
  const TreeTeam* const team = partNamed(machine.teams, alert.identity.team);
  return !team || (team->redundancyCode && *team->redundancyCode < kOverallFailureCode);
}

bool isRedundant(const OpenAlert& alert, const Tree& machine, DayTime) {
  const TreeTeam* const team = partNamed(machine.teams, alert.identity.team);
  return !team || (team->redundancyCode && *team->redundancyCode < kRedundancyLostCode);
}

bool memberWorks(const OpenAlert& alert, const Tree& machine, DayTime) {
  constexpr std::uint64_t kActive = 1, kBackup = 2;
  const TreeTeam* const team = partNamed(machine.teams, alert.identity.team);
  if (!team) return true;
  const auto member = std::ranges::find(team->members, alert.identity.interface, &TreeMember::port);
  return member == team->members.end() || member->roleCode == kActive || member->roleCode == kBackup;
}

/// What was taken down on purpose does not come back.
bool isBack(const OpenAlert& alert, const Tree& machine, DayTime now) {
  constexpr DayTime kDay = 24LL * 3600 * 1000;
  return partNamed(machine.teams, alert.identity.team) || now - alert.starts > kDay;
}

struct KindRow {
  unsigned kind;
  const char* name;
  const char* severity;
  bool (*isOver)(const OpenAlert&, const Tree&, DayTime);
};

constexpr std::array kKinds = {
    KindRow{kConnectivityLost, "ZebConnectivityLost", "critical", hasConnectivity},
    KindRow{kTeamFailed, "ZebTeamFailed", "critical", hasWorkingMember},
    KindRow{kRedundancyLost, "ZebRedundancyLost", "warning", isRedundant},
    KindRow{kMemberFailed, "ZebMemberFailed", "warning", memberWorks},
    KindRow{kInterfaceGone, "ZebInterfaceGone", "warning", isBack},
};

const KindRow* kindNamed(const std::string& name) {
  const auto found = std::ranges::find_if(kKinds, [&](const KindRow& row) { return name == row.name; });
  return found == kKinds.end() ? nullptr : &*found;
}

/// Events that are missing are no states: redundancy that is less and not lost (each member has an alert of
/// its own), members that come or change roles, the number of active ones, heartbeats, the collection.
struct EventRow {
  const char* event;
  unsigned opens;
  unsigned ends;
};

constexpr char kMemberStatusChanged[] = "10", kMemberDropped[] = "8";

constexpr std::array kEvents = {
    EventRow{"1", kConnectivityLost, 0},
    EventRow{"2", kConnectivityLost, 0},
    EventRow{"3", 0, kConnectivityLost},
    EventRow{"5", kRedundancyLost, kTeamFailed},
    EventRow{"6", 0, kTeamFailed},  // whether more than one works, the machine says
    EventRow{kMemberDropped, 0, kMemberFailed},
    EventRow{kMemberStatusChanged, kMemberFailed, kMemberFailed},  // one or the other, by its text
    EventRow{"11", 0, kInterfaceGone},
    EventRow{"12", kInterfaceGone, kConnectivityLost | kTeamFailed | kRedundancyLost | kMemberFailed},
    EventRow{"15", 0, kTeamFailed | kRedundancyLost},
    EventRow{"16", kTeamFailed | kRedundancyLost, 0},
    EventRow{"20", 0, kConnectivityLost},
    EventRow{"21", 0, kConnectivityLost},
};

const EventRow* rowOf(const std::string& event) {
  const auto found = std::ranges::find_if(kEvents, [&](const EventRow& row) { return event == row.event; });
  return found == kEvents.end() ? nullptr : &*found;
}

/// The word behind the last `mark` that stands before `end`.
std::string wordAfter(const std::string& text, const std::string& mark, std::size_t end = std::string::npos) {
  const std::size_t at = text.rfind(mark, end);
  if (at == std::string::npos) return {};
  const std::size_t from = at + mark.size();
  return text.substr(from, text.find(' ', from) - from);
}

/// What happened to which team or member stands in parentheses at the end. Names have no blanks.
AlertIdentity teamIn(std::string description, const std::string& event) {
  constexpr char kTeam[] = "Ethernet Team ";
  if (description.ends_with(')')) description.pop_back();
  AlertIdentity subject;
  subject.team = wordAfter(description, kTeam);
  if (event == kMemberStatusChanged || event == kMemberDropped)
    subject.interface = wordAfter(description, "ember ", description.rfind(kTeam));
  return subject;
}

std::map<std::string, std::string> annotationsOf(const PropertyView& indication) {
  std::map<std::string, std::string> annotations = {
      {"event", indication.text("EventID")},
      {"summary", indication.text("Summary")},
      {"description", indication.text("Description")},
      {"comment", indication.text("UserComment")},
      {"location", indication.text("HWPhysicalLocation")},
  };
  std::string& advice = annotations["recommended_actions"];
  for (const std::string& action : indication.texts("RecommendedActions"))
    advice += (advice.empty() ? "" : "\n") + action;
  std::erase_if(annotations, [](const auto& entry) { return entry.second.empty(); });
  return annotations;
}

}  // namespace

const char* severityOf(const std::string& alertName) {
  const KindRow* const row = kindNamed(alertName);
  return row ? row->severity : "warning";
}

bool concernsAlertmanager(const std::string& eventId) {
  return rowOf(eventId) != nullptr;
}

bool isOfPort(const PropertyView& indication) {
  constexpr std::uint64_t kPort = 11;
  return indication.number("EventSubCategory") == kPort;
}

std::vector<AlertChange> changesOf(const PropertyView& indication, const std::string& interface,
                                   DayTime time) {
  const std::string event = indication.text("EventID");
  const EventRow* const row = rowOf(event);
  if (!row) return {};
  const std::string description = indication.text("Description");
  const AlertIdentity subject =
      isOfPort(indication) ? AlertIdentity{"", interface, ""} : teamIn(description, event);
  if (subject.interface.empty() && subject.team.empty()) return {};
  unsigned opens = row->opens, ends = row->ends;
  if (event == kMemberStatusChanged) (description.ends_with(" to OK)") ? opens : ends) = 0;
  std::vector<AlertChange> changes;
  for (const KindRow& kind : kKinds) {
    AlertIdentity identity = subject;
    identity.name = kind.name;
    if ((ends & kind.kind) != 0) changes.push_back({identity, false, {}, time});
    if ((opens & kind.kind) != 0) changes.push_back({identity, true, annotationsOf(indication), time});
  }
  return changes;
}

bool isOver(const OpenAlert& alert, const Tree& machine, DayTime now) {
  const KindRow* const row = kindNamed(alert.identity.name);
  return !row || row->isOver(alert, machine, now);
}

}  // namespace ZebManager
