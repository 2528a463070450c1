#include "classes/port/ZEB_EthIPHostedAccessPoint.h"

namespace ZEB {
namespace {

const AssociationClass kClass{
    .name = "ZEB_EthIPHostedAccessPoint",
    .roles = {"Antecedent", "Dependent"},
};

}  // namespace

ZEB_EthIPHostedAccessPoint::ZEB_EthIPHostedAccessPoint(const Logger& logger, const std::string& nameSpace,
                                                       const CmpiCpp::CmpiObjectPath& system,
                                                       const CmpiCpp::CmpiObjectPath& ipEndpoint)
    : AssociationFrame(logger, nameSpace, kClass, system, ipEndpoint) {}

}  // namespace ZEB
