#include "classes/port/Associations.h"

namespace ZEB {

const AssociationClass ZEB_EthernetDevice::kClass{
    .name = "ZEB_EthernetDevice",
    .roles = {"GroupComponent", "PartComponent"},
};

}  // namespace ZEB
