#include "isolation/SupervisorLoop.h"

#include <poll.h>
#include <sys/eventfd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "values/ManagerError.h"

namespace ZebManager {
namespace {

/// Times that a call is moved away from a blocked process without being what blocks it.
constexpr unsigned kMostMoves = 3;

std::string packFilters(const std::vector<IndicationFilter>& filters) {
  std::vector<std::string> texts;
  for (const IndicationFilter& filter : filters) {
    texts.insert(texts.end(), {filter.name, filter.query, filter.queryLanguage});
  }
  return packTexts(texts);
}

ZEB::FileDescriptor makeWakeUp() {
  ZEB::FileDescriptor descriptor(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
  if (!descriptor) throw ManagerError(std::string("cannot supervise the provider: ") + std::strerror(errno));
  return descriptor;
}

}  // namespace

ProviderSupervisor::Loop::Loop(SupervisorOptions options, Sink sink)
    : _options(std::move(options)),
      _wakeUp(makeWakeUp()),
      _backOff(_options.firstBackOff, _options.longestBackOff),
      _sink(
          std::move(sink),
          [this](std::uint64_t process) {
            const std::lock_guard lock(_mutex);
            _takenFrom.push_back(process);
            wake();
          },
          _options.log),
      _thread([this] { run(); }) {}

ProviderSupervisor::Loop::~Loop() {
  stop();
  _thread.join();
}

void ProviderSupervisor::Loop::stop() {
  const std::lock_guard lock(_mutex);
  _stopping = true;
  wake();
}

void ProviderSupervisor::Loop::add(std::shared_ptr<Call> call) {
  const std::lock_guard lock(_mutex);
  if (_stopping) return call->answer(Outcome::Ended, kEnds);
  _arrived.push_back(std::move(call));
  wake();
}

void ProviderSupervisor::Loop::setFilters(const std::vector<IndicationFilter>& filters) {
  const std::lock_guard lock(_mutex);
  _arrivedFilters = packFilters(filters);
  wake();
}

void ProviderSupervisor::Loop::wake() {
  eventfd_write(_wakeUp.get(), 1);
}

void ProviderSupervisor::Loop::run() {
  while (takeArrivals()) {
    _now = Clock::now();
    watchTime();
    dispatch();
    waitForEvents();
    std::erase_if(_links, [](const auto& link) { return link->gone; });
  }
  for (const auto& call : _waiting) call->answer(Outcome::Ended, kEnds);
}

bool ProviderSupervisor::Loop::takeArrivals() {
  std::vector<std::shared_ptr<Call>> arrived;
  std::vector<std::uint64_t> takenFrom;
  std::optional<std::string> filters;
  {
    const std::lock_guard lock(_mutex);
    arrived.swap(_arrived);
    takenFrom.swap(_takenFrom);
    filters.swap(_arrivedFilters);
    _ending = _stopping;
  }
  for (auto& call : arrived) {
    call->number = ++_callNumber;
    _waiting.push_back(std::move(call));
  }
  for (const std::uint64_t process : takenFrom) {
    for (const auto& link : _links) {
      if (link->number == process) link->send(Frame::Kind::Taken, {});
    }
  }
  if (filters) takeFilters(std::move(*filters));
  return !_ending || !_links.empty();
}

void ProviderSupervisor::Loop::takeFilters(std::string filters) {
  if (_filters.empty() || filters.empty()) _reported.clear();
  _filters = std::move(filters);
  for (ProviderLink* const link : {_serving, _starting}) {
    if (link) link->send(Frame::Kind::Filters, _filters);
  }
}

/// A call under which a process ended goes alone: what then ends the next one is this call, and no other call
/// pays.
void ProviderSupervisor::Loop::dispatch() {
  std::erase_if(_waiting, [](const auto& call) { return !call->live(); });
  if (!_serving || _serving->condemned || _serving->hasSuspect()) return;
  while (!_waiting.empty() && _serving->calls.size() < _options.calls) {
    const bool suspect = _waiting.front()->suspect;
    if (suspect && _serving->hasLiveCalls()) return;
    _serving->send(_waiting.front());
    _waiting.pop_front();
    if (suspect) return;
  }
}

void ProviderSupervisor::Loop::waitForEvents() {
  std::vector<pollfd> watched = {{_wakeUp.get(), POLLIN, 0}};
  for (const auto& link : _links) {
    watched.push_back({link->socket(), link->awaited(), 0});
    watched.push_back({link->ending(), POLLIN, 0});
  }
  const bool over =
      std::any_of(_links.begin(), _links.end(), [](const auto& link) { return link->hasEnded(0); });
  const int patience = over ? 0 : static_cast<int>(patienceOfLoop().count());
  if (poll(watched.data(), watched.size(), patience) <= 0 && !over) return;
  eventfd_t count = 0;
  eventfd_read(_wakeUp.get(), &count);
  for (std::size_t i = 0; i < _links.size(); ++i) {
    ProviderLink& link = *_links[i];
    const short ending = watched[2 + 2 * i].revents;
    const short events = watched[1 + 2 * i].revents;
    if (events & POLLOUT) link.flush();
    if (ending || (events & ~POLLOUT)) link.receive(ending != 0);
    handleFrames(link);
    if (link.hasEnded(ending)) finish(link);
  }
  passOnWhatIsHeld();
}

void ProviderSupervisor::Loop::handleFrames(ProviderLink& link) {
  try {
    while (auto frame = link.next()) handle(link, std::move(*frame));
  } catch (const FrameError& error) {
    link.fault = error.what();
    link.kill();
  }
}

void ProviderSupervisor::Loop::handle(ProviderLink& link, Frame frame) {
  switch (frame.kind) {
    case Frame::Kind::Ready:
      if (link.stage == ProviderLink::Stage::Starting) promote(link);
      return;
    case Frame::Kind::Answer:
      link.useful = true;
      return answerCall(link, frame.number, Outcome::Done, std::move(frame.body));
    case Frame::Kind::Refusal:
      link.useful = true;
      return answerCall(link, frame.number, Outcome::Ended, std::move(frame.body));
    case Frame::Kind::Fault:
      link.fault = std::move(frame.body);
      return;
    case Frame::Kind::Reported:
      _reported.clear();
      return noteReported(link, frame.body);
    case Frame::Kind::Indication:
      return takeIndication(link, std::move(frame));
    case Frame::Kind::Pulse:
      return link.progress.note(unpackPulse(frame.body), _now);
    case Frame::Kind::Retired:
      link.drained = true;
      return;
    default:
      throw FrameError("a frame that is not for this end");
  }
}

void ProviderSupervisor::Loop::answerCall(ProviderLink& link, std::uint64_t number, Outcome outcome,
                                          std::string body) {
  const auto found = link.calls.find(number);
  if (found == link.calls.end()) return;
  found->second.call->answer(outcome, std::move(body));
  link.calls.erase(found);
}

/// In order, also over a take-over: what the process before took comes first.
bool ProviderSupervisor::Loop::mayPassOn(const ProviderLink& link) const {
  for (const auto& before : _links) {
    if (before.get() == &link) return true;
    if (!before->gone && !before->drained) return false;
  }
  return true;
}

void ProviderSupervisor::Loop::noteReported(const ProviderLink& link, std::string_view lines) {
  if (&link == _serving || &link == _starting) _reported.apply(lines);
}

void ProviderSupervisor::Loop::takeIndication(ProviderLink& link, Frame frame) {
  std::vector<std::string> texts = unpackTexts(frame.body);
  if (texts.empty()) throw FrameError("an indication without anything");
  noteReported(link, texts.front());
  texts.erase(texts.begin());
  if (texts.empty()) return;
  if (mayPassOn(link)) return passOn(link, std::move(texts));
  link.held.push_back(std::move(texts));
}

void ProviderSupervisor::Loop::passOn(const ProviderLink& link, std::vector<std::string> texts) {
  std::string element = std::move(texts.back());
  texts.pop_back();
  _sink.add(link.number, std::move(texts), std::move(element));
}

void ProviderSupervisor::Loop::passOnWhatIsHeld() {
  for (const auto& link : _links) {
    for (; !link->held.empty() && mayPassOn(*link); link->held.pop_front()) {
      passOn(*link, std::move(link->held.front()));
    }
  }
}

/// The fresh process takes over. Since the plug-in of the one before was told that nothing of it is taken any
/// more before this one began, what is indicated counts once.
void ProviderSupervisor::Loop::promote(ProviderLink& link) {
  ProviderLink* const before = std::exchange(_serving, &link);
  _starting = nullptr;
  link.stage = ProviderLink::Stage::Serving;
  link.since = _now;
  if (before) retire(*before);
}

/// What can be repeated is sent to the fresh process as well; the first answer counts. What has waited
/// longest may be what blocks, so it is moved once only.
void ProviderSupervisor::Loop::retire(ProviderLink& link) {
  link.stage = ProviderLink::Stage::Retired;
  link.since = _now;
  const ProviderLink::Sent* const oldest = link.oldest();
  for (const auto& [number, sent] : link.calls) {
    Call& call = *sent.call;
    if (!call.live() || !call.repeatable) continue;
    const bool moved = &sent == oldest ? !std::exchange(call.blamed, true) : call.moves++ < kMostMoves;
    if (moved) _waiting.push_back(sent.call);
  }
}

BackOff::Life ProviderSupervisor::Loop::lifeOf(const ProviderLink& link) const {
  const bool serving = link.stage == ProviderLink::Stage::Serving;
  if (serving && _now - link.since > _options.longestBackOff) return BackOff::Life::Lasting;
  return link.useful ? BackOff::Life::Useful : BackOff::Life::InVain;
}

void ProviderSupervisor::Loop::finish(ProviderLink& link) {
  const std::string how = link.reap();
  link.gone = true;
  const bool unasked =
      link.stage == ProviderLink::Stage::Starting || link.stage == ProviderLink::Stage::Serving;
  const BackOff::Life life = lifeOf(link);
  if (_serving == &link) _serving = nullptr;
  if (_starting == &link) {
    _starting = nullptr;
  }
  const std::string reason = "the provider's process ended (" + (link.fault.empty() ? how : link.fault) + ")";
  if (unasked && !_ending) {
    _backOff.ended(life, _now);
    _lastFault = reason;
    log(reason);
  }
  repeatOrEnd(link, reason);
}

void ProviderSupervisor::Loop::repeatOrEnd(ProviderLink& link, const std::string& reason) {
  for (auto entry = link.calls.rbegin(); entry != link.calls.rend(); ++entry) {
    const std::shared_ptr<Call>& call = entry->second.call;
    if (!call->live() || isUnderWay(*call, link)) continue;
    if (call->repeatable && !std::exchange(call->suspect, true)) {
      _waiting.push_front(call);
    } else {
      call->answer(Outcome::Ended, reason);
    }
  }
}

bool ProviderSupervisor::Loop::isUnderWay(const Call& call, const ProviderLink& except) const {
  return std::any_of(_waiting.begin(), _waiting.end(),
                     [&](const auto& other) { return other.get() == &call; }) ||
         std::any_of(_links.begin(), _links.end(), [&](const auto& link) {
           return link.get() != &except && !link->gone && link->calls.contains(call.number);
         });
}

void ProviderSupervisor::Loop::log(const std::string& line) const {
  if (_options.log) _options.log(oneLine(line));
}

}  // namespace ZebManager
