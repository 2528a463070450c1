#include "classes/port/ZEB_EthernetRemoteServiceHostedAccessPoint.h"

namespace ZEB {
namespace {

const AssociationClass kClass{
    .name = "ZEB_EthernetRemoteServiceHostedAccessPoint",
    .roles = {"Antecedent", "Dependent"},
};

}  // namespace

ZEB_EthernetRemoteServiceHostedAccessPoint::ZEB_EthernetRemoteServiceHostedAccessPoint(
    const Logger& logger, const std::string& nameSpace, const CmpiCpp::CmpiObjectPath& system,
    const CmpiCpp::CmpiObjectPath& gateway)
    : AssociationFrame(logger, nameSpace, kClass, system, gateway) {}

}  // namespace ZEB
