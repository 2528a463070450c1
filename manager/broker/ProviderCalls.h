// The operations of a loaded provider as typed calls.
#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "values/ManagerError.h"
#include "values/Objects.h"

namespace ZebManager {

/// The four interfaces of a provider. Null where it has none.
struct ProviderInterfaces {
  CMPIInstanceMI* instance = nullptr;
  CMPIAssociationMI* association = nullptr;
  CMPIMethodMI* method = nullptr;
  CMPIIndicationMI* indication = nullptr;
};

/// What an operation returned, with the memory that it lives in.
class Reply {
 public:
  Reply();

  std::span<const CMPIData> items() const;
  /// How the provider ended the operation. The message does not depend on the call's memory.
  CMPIrc code = CMPI_RC_OK;
  std::string message;

  /// Throws CimError when the provider refused.
  Reply orThrow() &&;

  Arena& callMemory() { return *_call; }
  Result* result() const { return _result; }

 private:
  std::unique_ptr<Arena> _call;
  std::unique_ptr<Arena> _kept;
  Result* _result;
};

/// Names of properties, null-terminated; null for all.
using PropertyList = const char* const*;

/// What an association request is narrowed to. An empty text does not narrow.
struct AssociationFilter {
  std::string associationClass;
  std::string resultClass;
  std::string role;
  std::string resultRole;
};

/// Calls may run on several threads at once. No call throws for what the provider answers: the reply says it.
class ProviderCalls {
 public:
  ProviderCalls(const ClassRepository& repository, std::string nameSpace);

  /// From here on calls reach the provider; with empty interfaces they no longer do.
  void connect(const ProviderInterfaces& interfaces) { _interfaces = interfaces; }

  const ClassRepository& repository() const { return _repository; }
  const std::string& nameSpace() const { return _nameSpace; }

  /// The same, for several questions about one moment, asked on one thread: their answers may share what the
  /// plug-in has asked the system for since it was made.
  ProviderCalls atOneMoment() const;
  /// What the answers of that moment, of which there was one at least, are a state of: as long as it stays,
  /// all classes say the same, the counters of statistics aside. None where the plug-in does not tell, or
  /// where they are not of one.
  std::optional<std::uint64_t> state() const;

  /// Instances of the class and of every class that derives from it; each is asked for by its own name.
  Reply enumerateInstances(std::string_view className, PropertyList properties = nullptr) const;
  /// Likewise, each handed over as soon as the provider returns it; the reply has none.
  Reply forEachInstance(std::string_view className, PropertyList properties, const TakeInstance& take) const;
  Reply enumerateInstanceNames(std::string_view className) const;
  Reply getInstance(const CMPIObjectPath& path, PropertyList properties = nullptr) const;
  Reply createInstance(const CMPIObjectPath& path, const CMPIInstance& instance) const;
  Reply modifyInstance(const CMPIObjectPath& path, const CMPIInstance& instance,
                       PropertyList properties) const;
  Reply deleteInstance(const CMPIObjectPath& path) const;
  Reply associators(const CMPIObjectPath& path, const AssociationFilter& filter,
                    PropertyList properties = nullptr) const;
  Reply associatorNames(const CMPIObjectPath& path, const AssociationFilter& filter) const;
  Reply references(const CMPIObjectPath& path, const AssociationFilter& filter,
                   PropertyList properties = nullptr) const;
  Reply referenceNames(const CMPIObjectPath& path, const AssociationFilter& filter) const;
  Reply invokeMethod(const CMPIObjectPath& path, const char* method, const CMPIArgs& in, CMPIArgs& out) const;

  /// What is known of the other ends of cables, as JSON; empty where the provider does not know the question.
  std::string linkPartners() const;

  /// Tells the provider that somebody listens to what the filter selects. The filter has to stay until
  /// `stopIndications`.
  Reply startIndications(const CMPISelectExp& filter, std::string_view className) const;
  Reply stopIndications(const CMPISelectExp& filter, std::string_view className) const;
  /// Takes one filter back while others stay.
  Reply deactivateFilter(const CMPISelectExp& filter, std::string_view className) const;

 private:
  using Operation = std::function<CMPIStatus(const CMPIContext*, const CMPIResult*)>;
  using ClassOperation =
      std::function<CMPIStatus(const CMPIContext*, const CMPIResult*, const CMPIObjectPath*)>;

  struct Moment {
    std::chrono::steady_clock::time_point begin;
    std::optional<std::uint64_t> state;
    bool answered = false;
  };

  static void noteState(Moment& moment, const Context& context);
  Reply perform(const void* interface, const Operation& operation) const;
  Reply performForEachClass(std::string_view className, const ClassOperation& operation) const;

  const ClassRepository& _repository;
  std::string _nameSpace;
  ProviderInterfaces _interfaces;
  std::shared_ptr<Moment> _moment;
};

/// A context as operations and factories get it.
Context* makeCallContext(Arena& arena, std::string_view nameSpace);

}  // namespace ZebManager
