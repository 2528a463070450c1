#include "classes/port/ZEB_EthernetLANHostedAccessPoint.h"

namespace ZEB {
namespace {

const AssociationClass kClass{
    .name = "ZEB_EthernetLANHostedAccessPoint",
    .roles = {"Antecedent", "Dependent"},
};

}  // namespace

ZEB_EthernetLANHostedAccessPoint::ZEB_EthernetLANHostedAccessPoint(const Logger& logger,
                                                                   const std::string& nameSpace,
                                                                   const CmpiCpp::CmpiObjectPath& system,
                                                                   const CmpiCpp::CmpiObjectPath& lanEndpoint)
    : AssociationFrame(logger, nameSpace, kClass, system, lanEndpoint) {}

}  // namespace ZEB
