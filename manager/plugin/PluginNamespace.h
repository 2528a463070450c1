// The namespace that the plug-in serves.
#pragma once

#include "broker/Namespace.h"

namespace ZebManager {

/// What the provider answers, and the one instance of `ZEB_ComputerSystem`, which no provider has.
class PluginNamespace : public Namespace {
 public:
  explicit PluginNamespace(const ProviderCalls& provider);

  const ClassRepository& repository() const override { return _provider.repository(); }
  std::optional<std::uint64_t> state() const override { return _provider.state(); }
  Reply enumerateInstances(std::string_view className, PropertyList properties) override;
  Reply forEachInstance(std::string_view className, PropertyList properties,
                        const TakeInstance& take) override;
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
  const ProviderCalls& _provider;
};

}  // namespace ZebManager
