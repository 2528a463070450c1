#pragma once

#include "classes/port/AssociationFrame.h"
#include "common/DataStore.h"

namespace ZEB {

class CollectionMember;

/// A port or a team as a member of the Ethernet collection, with the filter that says whether it counts.
class ZEB_EthernetMemberOfCollection : public AssociationFrame {
 public:
  static const AssociationClass kClass;

  /// `member` has to live as long as the membership is used; it belongs to the same collection of instances.
  ZEB_EthernetMemberOfCollection(const Logger& logger, const std::string& nameSpace,
                                 CmpiManagedInstance& member, CmpiManagedInstance& collection);

  CmpiCpp::CmpiInstance makeInstance() override;

  /// Takes "Included" over from `instance` and updates it under the member's path where the store, which may
  /// be null, has that path. `changed` tells whether it was another value. Returns the collection's path; an
  /// empty one when the member has no filter. Under the provider's lock.
  ///
  /// Throws `CmpiStatus`, and changes nothing then: `CMPI_RC_ERR_INVALID_PARAMETER` when "Included" is no
  /// boolean, `CMPI_RC_ERR_FAILED` when the store does not keep it.
  CmpiCpp::CmpiObjectPath modify(const CmpiCpp::CmpiInstance& instance, DataStore* store, bool& changed);

 private:
  void keep(DataStore* store, bool included) const;

  CollectionMember* _member;  ///< null when the member is neither a port nor a team
};

}  // namespace ZEB
