#include "classes/team/Associations.h"

namespace ZEB {

const AssociationClass ZEB_HostedEthernetTeam::kClass{
    .name = "ZEB_HostedEthernetTeam",
    .roles = {"OwningElement", "OwnedElement"},
    .keyOrder = AssociationClass::KeyOrder::SecondRoleFirst,
};

}  // namespace ZEB
