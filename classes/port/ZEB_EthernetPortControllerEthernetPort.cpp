#include "classes/port/ZEB_EthernetPortControllerEthernetPort.h"

namespace ZEB {
namespace {

const AssociationClass kClass{
    .name = "ZEB_EthernetPortControllerEthernetPort",
    .roles = {"Antecedent", "Dependent"},
};

}  // namespace

ZEB_EthernetPortControllerEthernetPort::ZEB_EthernetPortControllerEthernetPort(
    const Logger& logger, const std::string& nameSpace, const CmpiCpp::CmpiObjectPath& controller,
    const CmpiCpp::CmpiObjectPath& port)
    : AssociationFrame(logger, nameSpace, kClass, controller, port) {}

}  // namespace ZEB
