#include "isolation/ProviderLink.h"

#include <algorithm>

#include "isolation/ProviderProcess.h"

namespace ZebManager {
namespace {

constexpr int kReadsInARow = 64;

}  // namespace

ProviderLink::ProviderLink(const SupervisorOptions& options, std::uint64_t processNumber,
                           const std::string& filters, const std::string& reported)
    : number(processNumber),
      progress(options.patience, options.alertPatience),
      _child(options.process, kProviderSocket) {
  send(Frame::Kind::Begin, reported);
  send(Frame::Kind::Filters, filters);
}

void ProviderLink::send(const std::shared_ptr<Call>& call) {
  call->sent = true;
  calls.insert_or_assign(call->number, Sent{call, Clock::now()});
  _writer.add({Frame::Kind::Perform, call->number, call->message});
  flush();
}

void ProviderLink::send(Frame::Kind kind, std::string body) {
  if (stage == Stage::Leaving) return;
  _writer.add({kind, 0, std::move(body)});
  flush();
}

void ProviderLink::leave() {
  stage = Stage::Leaving;
  since = Clock::now();
  if (calls.empty() && _writer.empty()) {
    _child.closeSending();
  } else {
    kill();
  }
}

void ProviderLink::flush() {
  if (!_closed && _writer.send(_child.socket()) == Transfer::Ended) close("");
}

void ProviderLink::receive(bool all) {
  try {
    for (int reads = 0; !_closed && (all || reads < kReadsInARow); ++reads) {
      const Transfer transfer = _reader.receive(_child.socket());
      if (transfer == Transfer::WouldBlock) return;
      if (transfer == Transfer::Ended) close("");
    }
  } catch (const FrameError& error) {
    close(error.what());
  }
}

/// Without its socket a process is of no use, even when it lives on.
void ProviderLink::close(const std::string& reason) {
  _closed = true;
  if (fault.empty()) fault = reason;
  kill();
}

std::string ProviderLink::reap() {
  return _child.reap();
}

bool ProviderLink::hasLiveCalls() const {
  return std::any_of(calls.begin(), calls.end(), [](const auto& entry) { return entry.second.call->live(); });
}

bool ProviderLink::hasSuspect() const {
  return std::any_of(calls.begin(), calls.end(), [](const auto& entry) {
    return entry.second.call->live() && entry.second.call->suspect;
  });
}

bool ProviderLink::hasForgotten() const {
  return std::any_of(calls.begin(), calls.end(),
                     [](const auto& entry) { return entry.second.call->timedOut; });
}

bool ProviderLink::hasForgottenAsleep(Clock::time_point now) const {
  return std::any_of(calls.begin(), calls.end(), [&](const auto& entry) {
    return entry.second.call->timedOut && progress.isAsleep(entry.first, now);
  });
}

const ProviderLink::Sent* ProviderLink::oldest() const {
  const Sent* first = nullptr;
  for (const auto& [callNumber, sent] : calls) {
    if (sent.call->live() && (!first || sent.when < first->when)) first = &sent;
  }
  return first;
}

bool ProviderLink::otherWaits(Clock::time_point now, SupervisorOptions::Milliseconds grace) const {
  const Sent* const first = oldest();
  return std::any_of(calls.begin(), calls.end(), [&](const auto& entry) {
    return &entry.second != first && entry.second.call->live() && now - entry.second.when >= grace;
  });
}

}  // namespace ZebManager
