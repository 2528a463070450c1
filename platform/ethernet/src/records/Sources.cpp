#include "ethernet/Sources.h"

#include "kernel/KernelSource.h"
#include "recorded/RecordedSource.h"
#include "records/Inventory.h"

namespace ZEB::ethernet {

std::shared_ptr<Inventory> recordedInventory(const std::string& file, bool includeVirtual) {
  return std::make_shared<Inventory>(std::make_unique<RecordedSource>(file), includeVirtual);
}

std::shared_ptr<Inventory> kernelInventory(bool includeVirtual) {
  return std::make_shared<Inventory>(std::make_unique<KernelSource>(), includeVirtual);
}

}  // namespace ZEB::ethernet
