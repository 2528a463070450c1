#include "classes/team/Associations.h"
#include "classes/team/Software.h"

namespace ZEB {

const AssociationClass ZEB_EthernetElementSoftwareIdentity::kClass{
    .name = "ZEB_EthernetElementSoftwareIdentity",
    .roles = {"Dependent", "Antecedent"},
    .extras = {softwareStatus()},
};

}  // namespace ZEB
