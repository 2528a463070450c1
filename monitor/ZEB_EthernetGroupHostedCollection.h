#pragma once

#include "classes/port/AssociationFrame.h"

namespace ZEB {

/// The server and the collection of its ports.
class ZEB_EthernetGroupHostedCollection : public AssociationFrame {
 public:
  static const AssociationClass kClass;

  ZEB_EthernetGroupHostedCollection(const Logger& logger, const std::string& nameSpace,
                                    CmpiManagedInstance& collection,
                                    const CmpiCpp::CmpiObjectPath& computerSystem);
};

}  // namespace ZEB
