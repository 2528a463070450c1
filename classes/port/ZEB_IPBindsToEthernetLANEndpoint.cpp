#include "classes/port/Associations.h"

namespace ZEB {

const AssociationClass ZEB_IPBindsToEthernetLANEndpoint::kClass{
    .name = "ZEB_IPBindsToEthernetLANEndpoint",
    .roles = {"Antecedent", "Dependent"},
    .extras = {{"FrameType", std::uint16_t{1}}},
};

}  // namespace ZEB
