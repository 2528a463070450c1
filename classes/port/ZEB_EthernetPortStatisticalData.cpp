#include "classes/port/Associations.h"

namespace ZEB {

const AssociationClass ZEB_EthernetPortStatisticalData::kClass{
    .name = "ZEB_EthernetPortStatisticalData",
    .roles = {"ManagedElement", "Stats"},
};

}  // namespace ZEB
