#include "provider/ProviderRegistry.h"

#include <strings.h>

#include <chrono>
#include <mutex>
#include <new>
#include <system_error>
#include <thread>

#include "common/LibraryPin.h"
#include "common/Logger.h"
#include "monitor/NetlinkThread.h"
#include "provider/Factory.h"
#include "provider/Names.h"

namespace ZEB {
namespace {

/// How long a call may be under way before it counts as one that does not end.
constexpr std::chrono::seconds kPatience{5};

/// The library's code goes when its end returns. When a process ends it stays, and this comes after that end.
bool beingUnloaded = false;
[[gnu::destructor]] void noteUnloading() {
  beingUnloaded = true;
}

}  // namespace

ProviderRegistry::ProviderRegistry(Factory factory)
    : _factory(factory), _interfaces([this](const CmpiCpp::CmpiContext& context, bool terminating) {
        return release(context, terminating);
      }) {}

ProviderRegistry& ProviderRegistry::instance() {
  alignas(ProviderRegistry) static std::byte place[sizeof(ProviderRegistry)];
  static ProviderRegistry* const registry = new (place) ProviderRegistry(makeProvider);
  static const struct Ending {
    ~Ending() { registry->end(); }
  } ending;
  return *registry;
}

bool ProviderRegistry::CaseInsensitive::operator()(const std::string& a, const std::string& b) const {
  return strcasecmp(a.c_str(), b.c_str()) < 0;
}

CmpiCpp::CmpiProvider* ProviderRegistry::getProvider(const CmpiCpp::CmpiBroker& broker,
                                                     const std::string& name) {
  const std::lock_guard lock(_mutex);
  if (_ended) return nullptr;
  auto found = _providers.find(name);
  if (found == _providers.end()) {
    std::unique_ptr<CmpiCpp::CmpiProvider> made = _factory(broker, name);
    if (!made) return nullptr;
    found = _providers.emplace(name, std::move(made)).first;
    _interfaces.open(found->second.get(), broker);
    found->second->setInterfaces(&_interfaces);
    startWatch();
  } else {
    found->second->goOn();
  }
  CmpiCpp::CmpiProvider* provider = found->second.get();
  provider->incRefcount();
  return provider;
}

// A library that is unmapped under a call, or under a thread that cannot be stopped, takes the process with
// it, and when it is being unloaded it is too late to keep it.
bool ProviderRegistry::staysForGood() const {
  const bool endless = _interfaces.hasCallSince(kPatience);
  if (!endless && NetlinkThread::canBeStopped()) return false;
  Logger(kProviderName.view())
      .warn("%s: the library stays in the process",
            endless ? "a call does not end" : "the netlink thread cannot be stopped");
  keepLibraryMapped();
  return true;
}

void ProviderRegistry::startWatch() {
  constexpr std::chrono::seconds kInterval{1};
  try {
    _watch.emplace(WorkerTimer::Timing{.firstAfter = kInterval, .interval = kInterval},
                   [this](const WorkerTimer::NextRun& next) {
                     while (next() && !staysForGood()) continue;
                   });
  } catch (const std::system_error&) {
    // No more threads here: then the clean-ups alone look.
  }
}

bool ProviderRegistry::release(const CmpiCpp::CmpiContext& context, bool terminating) {
  const std::lock_guard lock(_mutex);
  const auto found = _providers.begin();
  if (found == _providers.end()) return true;
  CmpiCpp::CmpiProvider& provider = *found->second;
  const bool last = provider.refcount() <= 1;
  const bool busy = last && !_interfaces.close(kPatience);
  staysForGood();
  if (busy) {
    provider.goOn();
    return false;
  }
  provider.cleanup(context, terminating);
  if (provider.decRefcount() <= 0) {
    _watch.reset();
    _providers.erase(found);
  }
  return true;
}

void ProviderRegistry::end() {
  // Whoever is at work here may be waiting for this very thread, when it is the process's last.
  std::unique_lock lock(_mutex, std::try_to_lock);
  const auto deadline = std::chrono::steady_clock::now() + kPatience;
  while (!lock && (beingUnloaded || std::chrono::steady_clock::now() < deadline)) {
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
    static_cast<void>(lock.try_lock());
  }
  if (!lock) return;
  _ended = true;
  _watch.reset();
  // A provider that is still called, be it by a call in which the process is ending, stays as it is.
  const bool calledHere = _interfaces.isInProvider();
  if (!closeForGood() || calledHere) {
    for (auto& [name, provider] : _providers) static_cast<void>(provider.release());
  }
  _providers.clear();
}

bool ProviderRegistry::closeForGood() {
  if (_interfaces.closeForGood(kPatience)) return true;
  if (!beingUnloaded) return false;
  Logger(kProviderName.view()).warn("a call does not end: the library is unloaded when it has");
  while (!_interfaces.closeForGood(kPatience)) continue;
  return true;
}

}  // namespace ZEB
