#include "classes/port/ZEB_EthernetControllerPhysicalPackageEthernetController.h"

namespace ZEB {
namespace {

const AssociationClass kClass{
    .name = "ZEB_EthernetControllerPhysicalPackageEthernetController",
    .roles = {"Antecedent", "Dependent"},
};

}  // namespace

ZEB_EthernetControllerPhysicalPackageEthernetController::
    ZEB_EthernetControllerPhysicalPackageEthernetController(const Logger& logger,
                                                            const std::string& nameSpace,
                                                            const CmpiCpp::CmpiObjectPath& package,
                                                            const CmpiCpp::CmpiObjectPath& controller)
    : AssociationFrame(logger, nameSpace, kClass, package, controller) {}

}  // namespace ZEB
