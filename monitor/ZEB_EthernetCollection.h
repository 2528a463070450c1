#pragma once

#include <atomic>
#include <memory>
#include <mutex>

#include "classes/port/ManagedObject.h"
#include "common/CmpiManagedInstanceCollection.h"
#include "common/DataStore.h"
#include "common/OperationalStatus.h"

namespace ZEB {

/// All ports and teams as one, with the worst status of those that count. Safe from several threads.
class ZEB_EthernetCollection : public ManagedObject {
 public:
  static constexpr CmpiCpp::NameLiteral kClassName = "ZEB_EthernetCollection";

  ZEB_EthernetCollection(const Logger& logger, const std::string& nameSpace);

  CmpiCpp::CmpiInstance makeInstance() override;

  /// A group status as clients see it: 0, "Unknown" for any but OK, degraded and error.
  struct GroupStatus {
    operationalStatus status;
    const char* text;
  };
  static GroupStatus reported(operationalStatus status);

  /// Starts a pass over the members: the group is OK until one says otherwise.
  void reset();
  /// A whole pass: takes every member that counts into account, in the order of the instances. `force` marks
  /// the state as changed.
  void updateMembers(CmpiManagedInstanceCollection& instances, bool force);

  /// Whether a pass was forced since the last call of this.
  bool testAndClearStateChanged() { return _stateChanged.exchange(false); }

  /// Sets the filter of every visible port that the store knows, before the first pass of this collection.
  /// The store may be null.
  void updateStatusFilter(CmpiManagedInstanceCollection& instances, DataStore* store);

  /// Sets the filter of every port that the store knows as it is there now, and the group's status with it.
  /// Costs a look at the store while that has not changed.
  void follow(CmpiManagedInstanceCollection& instances, DataStore& store);

 private:
  void updateMember(CmpiManagedInstance& instance);
  operationalStatus updateWorstEthernetPort(operationalStatus current, operationalStatus update) const;
  operationalStatus groupStatus();

  std::atomic<bool> _firstPass{true};
  std::atomic<bool> _stateChanged{false};
  std::mutex _following;                               ///< one at a time takes filters from the store
  std::shared_ptr<const DataStore::Values> _followed;  ///< what they were last taken from
  std::mutex _memory;                                  ///< two passes may meet: a worker's and a client's
  operationalStatus _groupStatus = operationalStatus::OK;
};

}  // namespace ZEB
