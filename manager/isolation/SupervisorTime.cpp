// What the supervisor does because time has passed.
#include <algorithm>

#include "isolation/SupervisorLoop.h"
#include "values/ManagerError.h"

namespace ZebManager {
namespace {

using Milliseconds = SupervisorOptions::Milliseconds;

/// How exactly limits are kept.
constexpr Milliseconds kTick{20};
/// For a process that is to leave in good order, and for what it has not passed on yet.
constexpr Milliseconds kFarewell{2000};
/// For what a process took before it was replaced, behind a slow disk.
constexpr Milliseconds kLongestDrain{30'000};

}  // namespace

void ProviderSupervisor::Loop::watchTime() {
  if (_ending) {
    for (const auto& call : _waiting) call->answer(Outcome::Ended, kEnds);
    for (const auto& link : _links) {
      if (link->stage == ProviderLink::Stage::Starting) link->kill();
      if (link->stage == ProviderLink::Stage::Serving) {
        link->stage = ProviderLink::Stage::Retired;
        link->since = _now;
        if (!link->condemned) link->send(Frame::Kind::Retire, {});
      }
      for (const auto& [number, sent] : link->calls) sent.call->answer(Outcome::Ended, kEnds);
    }
  } else {
    expireCalls();
    condemnWhenBlocked();
    refuseWhenDown();
    startWhenNeeded();
  }
  endRetired();
}

void ProviderSupervisor::Loop::expireCalls() {
  const auto expire = [this](Call& call) {
    if (!call.live() || _now - call.arrival < _options.timeLimit) return;
    call.answer(Outcome::TimedOut,
                "the provider did not answer within " + std::to_string(_options.timeLimit.count()) + " ms");
  };
  for (const auto& call : _waiting) expire(*call);
  for (const auto& link : _links) {
    for (const auto& [number, sent] : link->calls) expire(*sent.call);
  }
}

/// The oldest call alone proves nothing: it may be slow and honest, and the others get their answers beside
/// it. Nor does its age, on a machine that gives it no processor.
void ProviderSupervisor::Loop::condemnWhenBlocked() {
  if (!_serving || _serving->condemned) return;
  askHowItIs();
  if (!isReplacementWanted()) return;
  if (_serving->progress.isSilent(_now)) {
    log("the provider's process does not tell how it gets on: it is ended");
    return _serving->kill();
  }
  std::string why = _serving->progress.trouble(_now);
  if (why.empty() && _serving->hasForgottenAsleep(_now)) why = "a call whose time is up sleeps";
  if (!why.empty()) condemn(*_serving, why);
}

void ProviderSupervisor::Loop::askHowItIs() {
  const auto worthIt = [this](const auto& entry) { return _now - entry.second.when > _options.grace; };
  const auto& calls = _serving->calls;
  if (std::none_of(calls.begin(), calls.end(), worthIt) || !_serving->progress.wantsPulse(_now)) return;
  _serving->progress.asked(_now);
  _serving->send(Frame::Kind::AskPulse, {});
}

/// Somebody waits because of a call that takes long.
bool ProviderSupervisor::Loop::isReplacementWanted() const {
  if (_serving->hasForgotten()) return true;
  const ProviderLink::Sent* const oldest = _serving->oldest();
  if (!oldest) return false;
  const auto age = _now - oldest->when;
  const bool queued = std::any_of(_waiting.begin(), _waiting.end(), [this](const auto& call) {
    return call->live() && _now - call->arrival >= _options.grace;
  });
  const bool othersWait = queued || _serving->otherWaits(_now, _options.grace);
  return (age > _options.patience && othersWait) || (age > _options.alertPatience && !_filters.empty());
}

void ProviderSupervisor::Loop::condemn(ProviderLink& link, const std::string& why) {
  log("the provider's process is stuck (" + why + "): a fresh one takes over");
  link.condemned = _now;
  link.send(Frame::Kind::Retire, {});
}

void ProviderSupervisor::Loop::startWhenNeeded() {
  if (_starting) {
    if (_now - _starting->since < _options.startLimit) return;
    _starting->fault = "it did not start in time";
    return _starting->kill();
  }
  if (_serving && !_serving->condemned) return;
  // What it has taken is what the fresh one does not have to report.
  if (_serving && !_serving->drained) {
    if (_now - *_serving->condemned > _options.alertPatience) _serving->kill();
    return;
  }
  if (_now < _backOff.notBefore()) return;
  if (_links.size() >= _options.processes) {
    const auto first = std::find_if(_links.begin(), _links.end(), [this](const auto& link) {
      return link.get() != _serving && link->stage != ProviderLink::Stage::Leaving;
    });
    if (first == _links.end()) return;
    for (const auto& [number, sent] : (*first)->calls) {
      if (!isUnderWay(*sent.call, **first)) {
        sent.call->answer(Outcome::TimedOut, "too many calls do not return; this one had to end early");
      }
    }
    return (*first)->leave();
  }
  try {
    _links.push_back(std::make_unique<ProviderLink>(_options, ++_processNumber, _filters, _reported.text()));
    _starting = _links.back().get();
  } catch (const ManagerError& error) {
    _backOff.ended(BackOff::Life::InVain, _now);
    _lastFault = error.what();
    log(_lastFault);
  }
}

/// Nobody waits for a process that keeps dying.
void ProviderSupervisor::Loop::refuseWhenDown() {
  if (!_backOff.hopeless() || _now >= _backOff.notBefore()) return;
  if (_starting || (_serving && !_serving->condemned)) return;
  for (const auto& call : _waiting) {
    if (_now - call->arrival > _options.patience) call->answer(Outcome::Ended, _lastFault);
  }
}

/// One in which calls hang can only be killed, and what it holds goes with it.
void ProviderSupervisor::Loop::endRetired() {
  for (const auto& link : _links) {
    const auto time = _now - link->since;
    const bool holds =
        !link->calls.empty() && !link->drained && time <= (_ending ? kFarewell : kLongestDrain);
    const bool stuck = !link->calls.empty() && time <= kFarewell;
    const bool over = link->stage == ProviderLink::Stage::Retired && !link->hasLiveCalls();
    if (over && !holds && (!stuck || _ending)) {
      if (_serving == link.get()) _serving = nullptr;
      link->leave();
    }
    if (link->stage == ProviderLink::Stage::Leaving && _now - link->since > kFarewell) link->kill();
  }
}

/// Without anything under way nothing needs a look at the clock.
Milliseconds ProviderSupervisor::Loop::patienceOfLoop() const {
  if (!_waiting.empty()) return kTick;
  if (_links.empty()) return std::max(kTick, std::chrono::ceil<Milliseconds>(_backOff.notBefore() - _now));
  const bool quiet = _serving && !_serving->condemned && _links.size() == 1 && _serving->calls.empty();
  return quiet ? Milliseconds(-1) : kTick;
}

}  // namespace ZebManager
