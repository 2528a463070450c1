#include "classes/port/Associations.h"

namespace ZEB {

const AssociationClass ZEB_EthernetControllerPhysicalPackageEthernetControllerLocation::kClass{
    .name = "ZEB_EthernetControllerPhysicalPackageEthernetControllerLocation",
    .roles = {"Element", "PhysicalLocation"},
};

}  // namespace ZEB
