#include "classes/port/Associations.h"

namespace ZEB {

const AssociationClass ZEB_EthernetLANEndpointStatisticalData::kClass{
    .name = "ZEB_EthernetLANEndpointStatisticalData",
    .roles = {"ManagedElement", "Stats"},
};

}  // namespace ZEB
