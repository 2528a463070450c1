#include "classes/port/ZEB_IPBindsToEthernetLANEndpoint.h"

namespace ZEB {
namespace {

const AssociationClass kClass{
    .name = "ZEB_IPBindsToEthernetLANEndpoint",
    .roles = {"Antecedent", "Dependent"},
    .extras = {{"FrameType", std::uint16_t{1}}},
};

}  // namespace

ZEB_IPBindsToEthernetLANEndpoint::ZEB_IPBindsToEthernetLANEndpoint(const Logger& logger,
                                                                   const std::string& nameSpace,
                                                                   const CmpiCpp::CmpiObjectPath& lanEndpoint,
                                                                   const CmpiCpp::CmpiObjectPath& ipEndpoint)
    : AssociationFrame(logger, nameSpace, kClass, lanEndpoint, ipEndpoint) {}

}  // namespace ZEB
