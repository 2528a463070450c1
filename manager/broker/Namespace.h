// What a namespace can be asked.
#pragma once

#include <string_view>

#include "broker/ProviderCalls.h"

namespace ZebManager {

/// Operations on the instances of one namespace. The path of an instance that is returned is complete, the
/// host aside. Safe from several threads. No operation throws for what a client sent: the reply says it.
class Namespace {
 public:
  Namespace() = default;
  Namespace(const Namespace&) = delete;
  Namespace& operator=(const Namespace&) = delete;
  virtual ~Namespace() = default;

  virtual const ClassRepository& repository() const = 0;

  /// What the answers so far are a state of: see `ProviderCalls`. None where that is not known.
  virtual std::optional<std::uint64_t> state() const { return std::nullopt; }

  /// Of the class and of every class that derives from it.
  virtual Reply enumerateInstances(std::string_view className, PropertyList properties) = 0;
  /// The same instances, each handed over, if possible as soon as it is there; the reply has none. Some may
  /// have been handed over when it is a refusal.
  virtual Reply forEachInstance(std::string_view className, PropertyList properties,
                                const TakeInstance& take);
  virtual Reply enumerateInstanceNames(std::string_view className) = 0;
  virtual Reply getInstance(const CMPIObjectPath& path, PropertyList properties) = 0;
  /// One item: the path of the new instance.
  virtual Reply createInstance(const CMPIObjectPath& path, const CMPIInstance& instance) = 0;
  virtual Reply modifyInstance(const CMPIObjectPath& path, const CMPIInstance& instance,
                               PropertyList properties) = 0;
  virtual Reply deleteInstance(const CMPIObjectPath& path) = 0;
  virtual Reply associators(const CMPIObjectPath& path, const AssociationFilter& filter,
                            PropertyList properties) = 0;
  virtual Reply associatorNames(const CMPIObjectPath& path, const AssociationFilter& filter) = 0;
  virtual Reply references(const CMPIObjectPath& path, const AssociationFilter& filter,
                           PropertyList properties) = 0;
  virtual Reply referenceNames(const CMPIObjectPath& path, const AssociationFilter& filter) = 0;
  /// One item at most: the return value.
  virtual Reply invokeMethod(const CMPIObjectPath& path, const char* method, const CMPIArgs& in,
                             CMPIArgs& out) = 0;
};

}  // namespace ZebManager
