#include "classes/port/ZEB_EthernetRemoteAccessAvailableToIPEndpoint.h"

namespace ZEB {
namespace {

const AssociationClass kClass{
    .name = "ZEB_EthernetRemoteAccessAvailableToIPEndpoint",
    .roles = {"Antecedent", "Dependent"},
    .extras = {{"IsDefault", true}, {"OrderOfAccess", std::uint16_t{0}}},
};

}  // namespace

ZEB_EthernetRemoteAccessAvailableToIPEndpoint::ZEB_EthernetRemoteAccessAvailableToIPEndpoint(
    const Logger& logger, const std::string& nameSpace, const CmpiCpp::CmpiObjectPath& gateway,
    const CmpiCpp::CmpiObjectPath& ipEndpoint)
    : AssociationFrame(logger, nameSpace, kClass, gateway, ipEndpoint) {}

}  // namespace ZEB
