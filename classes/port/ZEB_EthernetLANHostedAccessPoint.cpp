#include "classes/port/Associations.h"

namespace ZEB {

const AssociationClass ZEB_EthernetLANHostedAccessPoint::kClass{
    .name = "ZEB_EthernetLANHostedAccessPoint",
    .roles = {"Antecedent", "Dependent"},
};

}  // namespace ZEB
