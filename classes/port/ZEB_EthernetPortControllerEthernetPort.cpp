#include "classes/port/Associations.h"

namespace ZEB {

const AssociationClass ZEB_EthernetPortControllerEthernetPort::kClass{
    .name = "ZEB_EthernetPortControllerEthernetPort",
    .roles = {"Antecedent", "Dependent"},
};

}  // namespace ZEB
