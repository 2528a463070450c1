// What a running service serves.
#pragma once

#include "broker/Namespace.h"
#include "local/ServiceLink.h"

namespace ZebManager {

/// For one thread. Operations throw ManagerError when the service gives no answer.
class ServiceNamespace : public Namespace {
 public:
  ServiceNamespace(std::unique_ptr<ServiceLink> link, std::string runFolder,
                   const ClassRepository& repository)
      : _link(std::move(link)), _runFolder(std::move(runFolder)), _repository(repository) {}

  const ClassRepository& repository() const override { return _repository; }
  Reply enumerateInstances(std::string_view className, PropertyList properties) override;
  Reply enumerateInstanceNames(std::string_view className) override;
  Reply getInstance(const CMPIObjectPath& path, PropertyList properties) override;
  Reply createInstance(const CMPIObjectPath& path, const CMPIInstance& instance) override;
  Reply modifyInstance(const CMPIObjectPath& path, const CMPIInstance& instance,
                       PropertyList properties) override;
  Reply deleteInstance(const CMPIObjectPath& path) override;
  Reply associators(const CMPIObjectPath& path, const AssociationFilter& filter,
                    PropertyList properties) override;
  Reply associatorNames(const CMPIObjectPath& path, const AssociationFilter& filter) override;
  Reply references(const CMPIObjectPath& path, const AssociationFilter& filter,
                   PropertyList properties) override;
  Reply referenceNames(const CMPIObjectPath& path, const AssociationFilter& filter) override;
  Reply invokeMethod(const CMPIObjectPath& path, const char* method, const CMPIArgs& in,
                     CMPIArgs& out) override;

 private:
  using Clock = std::chrono::steady_clock;

  Reply ask(const std::string& request);
  /// The service ends connections on which nothing is asked.
  ServiceLink& link();

  std::unique_ptr<ServiceLink> _link;
  const std::string _runFolder;
  Clock::time_point _used = Clock::now();
  const ClassRepository& _repository;
};

}  // namespace ZebManager
