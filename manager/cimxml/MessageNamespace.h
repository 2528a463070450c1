// A namespace behind whoever answers CIM-XML.
#pragma once

#include <string>

#include "broker/Namespace.h"

namespace ZebManager {

/// As safe from several threads as `send` is. Operations throw what that throws.
class MessageNamespace : public Namespace {
 public:
  explicit MessageNamespace(const ClassRepository& repository) : _repository(repository) {}

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

 protected:
  /// The document that answers a request. Throws ManagerError when there is none.
  virtual std::string send(const std::string& request) = 0;

 private:
  Reply ask(const std::string& request);

  const ClassRepository& _repository;
};

}  // namespace ZebManager
