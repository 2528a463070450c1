#include "classes/port/Associations.h"

namespace ZEB {

const AssociationClass ZEB_EthernetPortToLANEndpoint::kClass{
    .name = "ZEB_EthernetPortToLANEndpoint",
    .roles = {"Antecedent", "Dependent"},
};

}  // namespace ZEB
