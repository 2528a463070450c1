// What filters, listener destinations and subscriptions have to be.
#pragma once

#include <functional>

#include "indications/StoredInstance.h"

namespace ZebManager {

class InteropRules {
 public:
  /// Null when there is no instance of that name.
  using Find = std::function<const StoredInstance*(const std::string& name)>;

  /// `sources` and `sourceNameSpace` are what filters select from.
  InteropRules(const InstanceNames& names, const ClassRepository& sources, std::string sourceNameSpace)
      : _names(names), _sources(sources), _sourceNameSpace(std::move(sourceNameSpace)) {}

  /// Throws Refusal when clients cannot make instances of the class.
  void requireCreatable(const ClassDef& classDef) const;
  /// Fills in what a client may leave out: keys, and defaults of the schema and of the class.
  void complete(StoredInstance& stored) const;
  /// Throws Refusal when the instance cannot be.
  void check(const StoredInstance& stored) const;
  /// Makes the references of a subscription the paths of what is there. Throws Refusal when nothing is.
  void resolve(StoredInstance& stored, const Find& find) const;
  /// Notes when a subscription came into its state.
  void noteState(StoredInstance& stored) const;

 private:
  bool isOf(const StoredInstance& stored, const char* className) const;
  void checkProperties(const StoredInstance& stored) const;
  void checkFilter(const StoredInstance& filter) const;
  void checkDestination(const StoredInstance& destination) const;
  bool isFromSources(const StoredInstance& filter) const;

  const InstanceNames& _names;
  const ClassRepository& _sources;
  std::string _sourceNameSpace;
};

/// Whether indications go to the subscription's listener.
bool isEnabled(const StoredInstance& subscription);

inline constexpr char kFilterClass[] = "CIM_IndicationFilter";
inline constexpr char kDestinationClass[] = "CIM_ListenerDestination";
inline constexpr char kSubscriptionClass[] = "CIM_IndicationSubscription";

}  // namespace ZebManager
