#include "classes/team/ZEB_EthernetElementSoftwareIdentity.h"

#include "classes/team/SoftwareStatus.h"

namespace ZEB {
namespace {

const AssociationClass kClass{
    .name = "ZEB_EthernetElementSoftwareIdentity",
    .roles = {"Dependent", "Antecedent"},
    .extras = {softwareStatus()},
};

}  // namespace

ZEB_EthernetElementSoftwareIdentity::ZEB_EthernetElementSoftwareIdentity(
    const Logger& logger, const std::string& nameSpace, const CmpiCpp::CmpiObjectPath& controller,
    const CmpiCpp::CmpiObjectPath& driver)
    : AssociationFrame(logger, nameSpace, kClass, controller, driver) {}

}  // namespace ZEB
