#include "classes/team/Associations.h"

namespace ZEB {

const AssociationClass ZEB_EthernetTeamToLANEndpoint::kClass{
    .name = "ZEB_EthernetTeamToLANEndpoint",
    .roles = {"Antecedent", "Dependent"},
};

}  // namespace ZEB
