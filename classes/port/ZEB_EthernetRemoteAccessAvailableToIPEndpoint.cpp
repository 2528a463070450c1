#include "classes/port/Associations.h"

namespace ZEB {

const AssociationClass ZEB_EthernetRemoteAccessAvailableToIPEndpoint::kClass{
    .name = "ZEB_EthernetRemoteAccessAvailableToIPEndpoint",
    .roles = {"Antecedent", "Dependent"},
    .extras = {{"IsDefault", true}, {"OrderOfAccess", std::uint16_t{0}}},
};

}  // namespace ZEB
