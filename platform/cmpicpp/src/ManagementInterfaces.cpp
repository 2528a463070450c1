#include "cmpicpp/ManagementInterfaces.h"

#include <utility>

#include "Trampoline.h"

namespace CmpiCpp {

void CmpiProvider::cleanup(const CmpiContext& /*context*/, bool /*terminating*/) {}

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

bool ManagementInterfaces::close(std::chrono::milliseconds patience) {
  std::unique_lock lock(_mutex);
  CmpiProvider* const provider = std::exchange(_provider, nullptr);
  if (_left.wait_for(lock, patience, [&] { return _calls == 0; })) return true;
  _provider = provider;
  return false;
}

ManagementInterfaces::Call::Call(ManagementInterfaces& interfaces) : _interfaces(interfaces) {
  const std::lock_guard lock(interfaces._mutex);
  _provider = interfaces._provider;
  ++interfaces._calls;
}

ManagementInterfaces::Call::~Call() {
  const std::lock_guard lock(_interfaces._mutex);
  if (--_interfaces._calls == 0) _interfaces._left.notify_all();
}

CMPIrc ManagementInterfaces::cleanup(const CmpiContext& context, bool terminating) {
  {
    const std::lock_guard lock(_mutex);
    if (!_provider) return CMPI_RC_ERR_FAILED;
    if (_indicationsEnabled && !terminating) return CMPI_RC_DO_NOT_UNLOAD;
  }
  return _release(context, terminating) ? CMPI_RC_OK : CMPI_RC_DO_NOT_UNLOAD;
}

void ManagementInterfaces::setIndicationsEnabled(bool enabled) {
  const std::lock_guard lock(_mutex);
  _indicationsEnabled = enabled;
}

}  // namespace CmpiCpp
