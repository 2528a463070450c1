#pragma once

#include <memory>
#include <vector>

#include "ethernet/EthernetAdapterDataObject.h"
#include "ethernet/EthernetTeamDataObject.h"
#include "records/Inventory.h"

/// Records of a model's entries, which can be refreshed from an inventory.
namespace ZEB::ethernet {

EthernetAdapterDataObject makeRecord(const AdapterEntry& entry, const std::shared_ptr<Inventory>& inventory);
EthernetTeamDataObject makeRecord(const TeamEntry& entry, const std::shared_ptr<Inventory>& inventory);

}  // namespace ZEB::ethernet
