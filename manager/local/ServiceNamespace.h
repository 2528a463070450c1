// What a running service serves.
#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "cimxml/MessageNamespace.h"
#include "local/ServiceLink.h"

namespace ZebManager {

/// For one thread. Operations throw ManagerError when the service gives no answer.
class ServiceNamespace : public MessageNamespace {
 public:
  ServiceNamespace(std::unique_ptr<ServiceLink> link, std::string runFolder,
                   const ClassRepository& repository)
      : MessageNamespace(repository), _link(std::move(link)), _runFolder(std::move(runFolder)) {}

 protected:
  std::string send(const std::string& request) override;

 private:
  using Clock = std::chrono::steady_clock;

  std::unique_ptr<ServiceLink> _link;
  const std::string _runFolder;
  Clock::time_point _used = Clock::now();
};

}  // namespace ZebManager
