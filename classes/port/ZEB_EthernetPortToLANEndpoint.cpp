#include "classes/port/ZEB_EthernetPortToLANEndpoint.h"

namespace ZEB {
namespace {

const AssociationClass kClass{
    .name = "ZEB_EthernetPortToLANEndpoint",
    .roles = {"Antecedent", "Dependent"},
};

}  // namespace

ZEB_EthernetPortToLANEndpoint::ZEB_EthernetPortToLANEndpoint(const Logger& logger,
                                                             const std::string& nameSpace,
                                                             const CmpiCpp::CmpiObjectPath& port,
                                                             const CmpiCpp::CmpiObjectPath& lanEndpoint)
    : AssociationFrame(logger, nameSpace, kClass, port, lanEndpoint) {}

}  // namespace ZEB
