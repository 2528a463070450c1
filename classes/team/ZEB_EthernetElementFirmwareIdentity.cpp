#include "classes/team/ZEB_EthernetElementFirmwareIdentity.h"

#include "classes/team/SoftwareStatus.h"

namespace ZEB {
namespace {

const AssociationClass kClass{
    .name = "ZEB_EthernetElementFirmwareIdentity",
    .roles = {"Dependent", "Antecedent"},
    .extras = {softwareStatus()},
};

}  // namespace

ZEB_EthernetElementFirmwareIdentity::ZEB_EthernetElementFirmwareIdentity(
    const Logger& logger, const std::string& nameSpace, const CmpiCpp::CmpiObjectPath& controller,
    const CmpiCpp::CmpiObjectPath& firmware)
    : AssociationFrame(logger, nameSpace, kClass, controller, firmware) {}

}  // namespace ZEB
