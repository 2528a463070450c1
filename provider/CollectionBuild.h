#pragma once

#include <vector>

#include "classes/port/InstanceMaker.h"
#include "classes/team/TeamBuild.h"
#include "common/DataStore.h"

namespace ZEB {

class ZEB_EthernetCollection;
class ZEB_EthernetPort;

/// A port that was built. The collection owns the instance.
struct PortEntry {
  const TeamRecord* team = nullptr;  ///< that the port is a member of
  bool visible = true;
  ZEB_EthernetPort* port = nullptr;
  EthernetPort record;  ///< without its VLANs
};

/// The last part of a build: the collection of all ports, and who is a member of what.
class CollectionBuild {
 public:
  /// The store may be null.
  CollectionBuild(const InstanceMaker& maker, DataStore* store) : _maker(maker), _store(store) {}

  /// `instances` are all that there are, those made here among them.
  void run(CmpiManagedInstanceCollection& instances, const std::vector<TeamRecord>& teams,
           const std::vector<PortEntry>& ports);

 private:
  /// Makes the ports known to the store, too, so that their filters can be kept. What is there stays.
  void buildMemberships(ZEB_EthernetCollection& collection, const std::vector<TeamRecord>& teams,
                        const std::vector<PortEntry>& ports);
  void buildMembership(ZEB_EthernetCollection& collection, const PortEntry& entry);

  const InstanceMaker& _maker;
  DataStore* const _store;
};

}  // namespace ZEB
