#include "classes/port/ZEB_EthernetPortStatisticalData.h"

namespace ZEB {
namespace {

const AssociationClass kClass{
    .name = "ZEB_EthernetPortStatisticalData",
    .roles = {"ManagedElement", "Stats"},
};

}  // namespace

ZEB_EthernetPortStatisticalData::ZEB_EthernetPortStatisticalData(const Logger& logger,
                                                                 const std::string& nameSpace,
                                                                 const CmpiCpp::CmpiObjectPath& port,
                                                                 const CmpiCpp::CmpiObjectPath& statistics)
    : AssociationFrame(logger, nameSpace, kClass, port, statistics) {}

}  // namespace ZEB
