#include "classes/port/ZEB_EthernetDevice.h"

namespace ZEB {
namespace {

const AssociationClass kClass{
    .name = "ZEB_EthernetDevice",
    .roles = {"GroupComponent", "PartComponent"},
};

}  // namespace

ZEB_EthernetDevice::ZEB_EthernetDevice(const Logger& logger, const std::string& nameSpace,
                                       const CmpiCpp::CmpiObjectPath& system,
                                       const CmpiCpp::CmpiObjectPath& port)
    : AssociationFrame(logger, nameSpace, kClass, system, port) {}

}  // namespace ZEB
