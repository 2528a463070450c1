#include "classes/team/Associations.h"
#include "classes/team/Software.h"

namespace ZEB {

const AssociationClass ZEB_EthernetElementFirmwareIdentity::kClass{
    .name = "ZEB_EthernetElementFirmwareIdentity",
    .roles = {"Dependent", "Antecedent"},
    .extras = {softwareStatus()},
};

}  // namespace ZEB
