// What a running service serves.
#pragma once

#include <functional>
#include <string>

#include "broker/Namespace.h"

namespace ZebManager {

/// For one thread. Operations throw what `ask` does.
class ServiceNamespace : public Namespace {
 public:
  /// The answer to a request.
  using Ask = std::function<std::string(const std::string& request)>;

  ServiceNamespace(Ask ask, const ClassRepository& repository)
      : _ask(std::move(ask)), _repository(repository) {}

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
  Reply ask(const std::string& request);

  const Ask _ask;
  const ClassRepository& _repository;
};

}  // namespace ZebManager
