#pragma once

#include <string>

#include "classes/port/Known.h"
#include "ethernet/EthernetAdapterDataObject.h"

namespace ZEB {

/// "JXV:" and the adapter's model: the family that its driver and its firmware belong to.
inline std::string softwareFamily(const EthernetAdapterDataObject& adapter) {
  const std::string model = known(adapter, &EthernetAdapterDataObject::getModel).value_or("");
  return "JXV:" + (model.empty() ? "Unknown" : model);
}

}  // namespace ZEB
