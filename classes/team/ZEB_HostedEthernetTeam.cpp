#include "classes/team/ZEB_HostedEthernetTeam.h"

namespace ZEB {
namespace {

const AssociationClass kClass{
    .name = "ZEB_HostedEthernetTeam",
    .roles = {"OwningElement", "OwnedElement"},
    .keyOrder = AssociationClass::KeyOrder::SecondRoleFirst,
};

}  // namespace

ZEB_HostedEthernetTeam::ZEB_HostedEthernetTeam(const Logger& logger, const std::string& nameSpace,
                                               const CmpiCpp::CmpiObjectPath& system,
                                               const CmpiCpp::CmpiObjectPath& team)
    : AssociationFrame(logger, nameSpace, kClass, system, team) {}

}  // namespace ZEB
