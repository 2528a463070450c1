#include "model/Settling.h"

#include <algorithm>

#include "model/Kinds.h"
#include "model/LinkStatus.h"

namespace ZEB::ethernet {
namespace {

std::uint32_t teamOf(const LinkFacts& link) {
  return link.bondMember ? link.masterIndex.value_or(0) : 0;
}

}  // namespace

Settling::Settling(std::chrono::milliseconds time, std::function<Clock::time_point()> now)
    : _time(time), _now(std::move(now)) {}

void Settling::watchAll(HostSnapshot& snapshot) {
  if (_time.count() == 0) return;
  ++_answers;
  watchSome(snapshot);
  std::erase_if(_seen, [this](const auto& entry) { return entry.second.answer != _answers; });
}

void Settling::watchSome(HostSnapshot& snapshot) {
  if (_time.count() == 0) return;
  const auto now = _now();
  for (const LinkFacts& link : snapshot.links) watch(link, now);
  for (const LinkFacts& link : snapshot.links) {
    if (isVlan(link)) waitForLower(link);
  }
  waitForMembers(snapshot);
  mark(snapshot);
}

void Settling::watch(const LinkFacts& link, Clock::time_point now) {
  const auto [entry, isNew] = _seen.try_emplace(link.index);
  Seen& seen = entry->second;
  const Seen before = seen;
  seen.answer = _answers;
  seen.up = isAdministrativelyUp(link).value_or(false);
  seen.team = teamOf(link);
  // The first answer says how things are, not what has happened.
  const bool watched = !isNew || _answers > 1;
  const bool joined = watched && seen.team != 0 && seen.team != before.team;
  const bool switchedOn = watched && !before.up;
  if (seen.up && (joined || switchedOn)) {
    seen.settles = joined ? Settles::Joined : Settles::SwitchedOn;
    seen.until = now + _time;
    seen.hadCarrier = false;
  }
  seen.hadCarrier |= hasCarrier(link).value_or(false);
  if (!seen.up || now >= seen.until || hasWholeLink(link)) seen.settles = Settles::No;
}

/// A VLAN has its link when what is under it has.
void Settling::waitForLower(const LinkFacts& vlan) {
  const auto lower = _seen.find(vlan.lowerIndex.value_or(0));
  Seen& seen = _seen.at(vlan.index);
  if (lower == _seen.end() || lower->second.settles == Settles::No || lower->second.hadCarrier || !seen.up ||
      hasWholeLink(vlan))
    return;
  seen.settles = Settles::SwitchedOn;
  seen.hadCarrier = false;
  seen.until = lower->second.until;
}

/// A team that settles has the time that its members have.
void Settling::waitForMembers(const HostSnapshot& snapshot) {
  for (const LinkFacts& link : snapshot.links) {
    const auto team = _seen.find(teamOf(link));
    if (team == _seen.end() || team->second.settles == Settles::No) continue;
    const Seen& member = _seen.at(link.index);
    if (member.settles != Settles::No) team->second.until = std::max(team->second.until, member.until);
  }
}

void Settling::mark(HostSnapshot& snapshot) const {
  for (LinkFacts& link : snapshot.links) {
    const Seen& seen = _seen.at(link.index);
    link.settles = seen.settles;
    link.hadCarrier = seen.hadCarrier;
  }
}

std::optional<Settling::Clock::time_point> Settling::next() const {
  std::optional<Clock::time_point> next;
  for (const auto& [index, seen] : _seen) {
    if (seen.settles != Settles::No) next = std::min(next.value_or(seen.until), seen.until);
  }
  return next;
}

}  // namespace ZEB::ethernet
