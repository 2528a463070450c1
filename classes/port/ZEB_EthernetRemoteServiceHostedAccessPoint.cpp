#include "classes/port/Associations.h"

namespace ZEB {

const AssociationClass ZEB_EthernetRemoteServiceHostedAccessPoint::kClass{
    .name = "ZEB_EthernetRemoteServiceHostedAccessPoint",
    .roles = {"Antecedent", "Dependent"},
};

}  // namespace ZEB
