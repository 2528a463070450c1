#include "classes/port/ZEB_EthernetLANEndpointStatisticalData.h"

namespace ZEB {
namespace {

const AssociationClass kClass{
    .name = "ZEB_EthernetLANEndpointStatisticalData",
    .roles = {"ManagedElement", "Stats"},
};

}  // namespace

ZEB_EthernetLANEndpointStatisticalData::ZEB_EthernetLANEndpointStatisticalData(
    const Logger& logger, const std::string& nameSpace, const CmpiCpp::CmpiObjectPath& lanEndpoint,
    const CmpiCpp::CmpiObjectPath& statistics)
    : AssociationFrame(logger, nameSpace, kClass, lanEndpoint, statistics) {}

}  // namespace ZEB
