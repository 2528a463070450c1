#include "cmpicpp/ManagementInterfaces.h"

#include <unistd.h>

#include <algorithm>
#include <utility>

#include "ThreadDeparture.h"
#include "Trampoline.h"

namespace CmpiCpp {

void CmpiProvider::cleanup(const CmpiContext& /*context*/, bool /*terminating*/) {}
void CmpiProvider::goOn() {}
void CmpiProvider::setInterfaces(ManagementInterfaces* interfaces) {
  _interfaces = interfaces;
}

ManagementInterfaces::ManagementInterfaces(Release release)
    : _instance{this, &kInstanceTable},
      _association{this, &kAssociationTable},
      _method{this, &kMethodTable},
      _indication{this, &kIndicationTable},
      _release(std::move(release)) {}

void ManagementInterfaces::open(CmpiProvider* provider, const CmpiBroker& broker) {
  const std::lock_guard lock(_mutex);
  _provider = provider;
  _broker = broker;
  _indicationsEnabled = false;
}

bool ManagementInterfaces::onlyOwnCallsLeft() const {
  return std::all_of(_calls.begin(), _calls.end(),
                     [](const Call* call) { return call->_thread == std::this_thread::get_id(); });
}

bool ManagementInterfaces::close(Clock::duration patience) {
  std::unique_lock lock(_mutex);
  CmpiProvider* const provider = std::exchange(_provider, nullptr);
  if (_left.wait_for(lock, patience, [&] { return onlyOwnCallsLeft(); })) return true;
  _provider = provider;
  return false;
}

bool ManagementInterfaces::closeForGood(Clock::duration patience) {
  std::unique_lock lock(_mutex);
  _over = true;
  _provider = nullptr;
  endStandstill();
  const bool all = _left.wait_for(lock, patience, [&] { return _standing == 0 && onlyOwnCallsLeft(); });
  std::set<pid_t> leaving = std::exchange(_leaving, {});
  lock.unlock();
  leaving.erase(gettid());
  awaitDeparture(std::move(leaving));
  return all;
}

void ManagementInterfaces::endStandstill() {
  ++_standstills;
  _ended.notify_all();
}

bool ManagementInterfaces::hasCallSince(Clock::duration age) const {
  const std::lock_guard lock(_mutex);
  return !_calls.empty() && Clock::now() - _calls.front()->_begun >= age;
}

bool ManagementInterfaces::isInProvider() const {
  const std::lock_guard lock(_mutex);
  return std::any_of(_calls.begin(), _calls.end(), [](const Call* call) {
    return call->_thread == std::this_thread::get_id() && call->_inProvider;
  });
}

ManagementInterfaces::Call::Call(ManagementInterfaces& interfaces) : _interfaces(interfaces) {
  const std::lock_guard lock(interfaces._mutex);
  _provider = interfaces._provider;
  _broker = interfaces._broker;
  _place = interfaces._calls.insert(interfaces._calls.end(), this);
}

ManagementInterfaces::Call::~Call() {
  const std::lock_guard lock(_interfaces._mutex);
  if (_standing) {
    --_interfaces._standing;
  } else {
    _interfaces._calls.erase(_place);
  }
  if (_interfaces._over) _interfaces._leaving.insert(gettid());
  _interfaces._left.notify_all();
}

void ManagementInterfaces::Call::standStill() {
  std::unique_lock lock(_interfaces._mutex);
  if (_interfaces._standing >= kMostStanding || _interfaces._over) return;
  _interfaces._calls.erase(_place);
  _standing = true;
  ++_interfaces._standing;
  _interfaces._left.notify_all();
  const unsigned begun = _interfaces._standstills;
  _interfaces._ended.wait(lock, [&] { return _interfaces._standstills != begun; });
}

CMPIrc ManagementInterfaces::cleanup(const CmpiContext& context, bool terminating) {
  {
    const std::lock_guard lock(_mutex);
    if (terminating) endStandstill();
    if (!_provider) return CMPI_RC_ERR_FAILED;
    if (_indicationsEnabled && !terminating) return CMPI_RC_DO_NOT_UNLOAD;
  }
  return _release(context, terminating) ? CMPI_RC_OK : CMPI_RC_DO_NOT_UNLOAD;
}

CmpiBroker ManagementInterfaces::broker() const {
  const std::lock_guard lock(_mutex);
  return _broker;
}

void ManagementInterfaces::setIndicationsEnabled(bool enabled) {
  const std::lock_guard lock(_mutex);
  _indicationsEnabled = enabled;
}

}  // namespace CmpiCpp
