#include "classes/port/ZEB_EthernetControllerPhysicalPackageEthernetControllerLocation.h"

namespace ZEB {
namespace {

const AssociationClass kClass{
    .name = "ZEB_EthernetControllerPhysicalPackageEthernetControllerLocation",
    .roles = {"Element", "PhysicalLocation"},
};

}  // namespace

ZEB_EthernetControllerPhysicalPackageEthernetControllerLocation::
    ZEB_EthernetControllerPhysicalPackageEthernetControllerLocation(const Logger& logger,
                                                                    const std::string& nameSpace,
                                                                    const CmpiCpp::CmpiObjectPath& package,
                                                                    const CmpiCpp::CmpiObjectPath& location)
    : AssociationFrame(logger, nameSpace, kClass, package, location) {}

}  // namespace ZEB
