#include "local/ServiceNamespace.h"

#include <utility>

#include "values/ManagerError.h"

namespace ZebManager {

/// The service ends connections on which nothing is asked.
std::string ServiceNamespace::send(const std::string& request) {
  constexpr std::chrono::milliseconds kFresh(500);
  const auto now = Clock::now();
  if (now - std::exchange(_used, now) > kFresh) _link = ServiceLink::find(_runFolder);
  if (!_link) throw ManagerError("the service has ended");
  return _link->ask(request);
}

}  // namespace ZebManager
