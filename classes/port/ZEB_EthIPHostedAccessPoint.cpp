#include "classes/port/Associations.h"

namespace ZEB {

const AssociationClass ZEB_EthIPHostedAccessPoint::kClass{
    .name = "ZEB_EthIPHostedAccessPoint",
    .roles = {"Antecedent", "Dependent"},
};

}  // namespace ZEB
