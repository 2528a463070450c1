#include "isolation/ProgressWatch.h"

#include <algorithm>

namespace ZebManager {
namespace {

/// Looks in one patience.
constexpr int kPulses = 8;
/// Of these so many have to have seen it quiet.
constexpr unsigned kLeastPulses = 4;
/// Of processor time, that one call may use; the largest machines need a small part of one.
constexpr int kPatiences = 10;

}  // namespace

bool ProgressWatch::wantsPulse(Clock::time_point now) const {
  return !_asked && now - _told >= _patience / kPulses;
}

void ProgressWatch::note(const Pulse& pulse, Clock::time_point now) {
  if (now - _told > _patience) _quietSince.reset();  // there was no reason to look meanwhile
  _asked.reset();
  _told = now;
  if (pulse.anyAwake()) {
    _quietSince.reset();
  } else if (!_quietSince) {
    _quietSince = now;
    _quietPulses = 1;
  } else {
    ++_quietPulses;
  }
  std::map<std::uint64_t, Seen> calls;
  for (const Pulse::Performed& call : pulse.calls) {
    const auto before = _calls.find(call.number);
    const bool slept = before != _calls.end() && !call.awake;
    calls[call.number] = {slept ? before->second.awake : now, call.processorTime};
  }
  _calls.swap(calls);
}

bool ProgressWatch::isSilent(Clock::time_point now) const {
  return _asked && now - *_asked > _silence;
}

std::string ProgressWatch::trouble(Clock::time_point now) const {
  const auto most = std::chrono::microseconds(_patience).count() * kPatiences;
  if (std::any_of(_calls.begin(), _calls.end(), [&](const auto& call) {
        return call.second.processorTime > static_cast<std::uint64_t>(most);
      })) {
    return "a call has used " + std::to_string(most / 1000) + " ms of processor time";
  }
  if (!_quietSince || _quietPulses < kLeastPulses || now - *_quietSince < _patience) return {};
  return "nothing has moved in it for " +
         std::to_string(std::chrono::duration_cast<Milliseconds>(now - *_quietSince).count()) + " ms";
}

bool ProgressWatch::isAsleep(std::uint64_t call, Clock::time_point now) const {
  const auto found = _calls.find(call);
  return found != _calls.end() && now - found->second.awake >= _patience;
}

}  // namespace ZebManager
