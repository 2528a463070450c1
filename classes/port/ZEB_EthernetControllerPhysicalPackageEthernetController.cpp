#include "classes/port/Associations.h"

namespace ZEB {

const AssociationClass ZEB_EthernetControllerPhysicalPackageEthernetController::kClass{
    .name = "ZEB_EthernetControllerPhysicalPackageEthernetController",
    .roles = {"Antecedent", "Dependent"},
};

}  // namespace ZEB
