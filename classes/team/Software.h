#pragma once

#include <cstdint>
#include <string>

#include "classes/port/Known.h"
#include "cmpicpp/CmpiInstance.h"
#include "ethernet/EthernetAdapterDataObject.h"

namespace ZEB {

/// "JXV:" and the adapter's model: the family that its driver and its firmware belong to.
inline std::string softwareFamily(const EthernetAdapterDataObject& adapter) {
  const std::string model = known(adapter, &EthernetAdapterDataObject::getModel).value_or("");
  return "JXV:" + (model.empty() ? "Unknown" : model);
}

/// "ElementSoftwareStatus" of software that is current and installed.
inline CmpiCpp::CmpiInstance::Property softwareStatus() {
  CmpiCpp::CmpiArray status(2, CMPI_uint16);
  status.setElementAt(0, std::uint16_t{2});  // current
  status.setElementAt(1, std::uint16_t{6});  // installed
  return {"ElementSoftwareStatus", status};
}

}  // namespace ZEB
