#include "classes/team/ZEB_EthernetTeamToLANEndpoint.h"

namespace ZEB {
namespace {

const AssociationClass kClass{
    .name = "ZEB_EthernetTeamToLANEndpoint",
    .roles = {"Antecedent", "Dependent"},
};

}  // namespace

ZEB_EthernetTeamToLANEndpoint::ZEB_EthernetTeamToLANEndpoint(const Logger& logger,
                                                             const std::string& nameSpace,
                                                             const CmpiCpp::CmpiObjectPath& team,
                                                             const CmpiCpp::CmpiObjectPath& lanEndpoint)
    : AssociationFrame(logger, nameSpace, kClass, team, lanEndpoint) {}

}  // namespace ZEB
