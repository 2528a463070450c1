#include "ethernet/Sources.h"

#include "kernel/KernelSource.h"
#include "recorded/RecordedSource.h"
#include "records/Inventory.h"

namespace ZEB::ethernet {

std::shared_ptr<Inventory> recordedInventory(const std::string& file, bool includeVirtual,
                                             std::chrono::seconds settleTime) {
  return std::make_shared<Inventory>(std::make_unique<RecordedSource>(file), includeVirtual, settleTime);
}

std::optional<std::string> checkRecording(const std::string& file) {
  const auto snapshot = RecordedSource(file).readAll();
  return snapshot ? std::nullopt : std::optional(snapshot.failure().what);
}

std::shared_ptr<Inventory> kernelInventory(bool includeVirtual, std::chrono::seconds settleTime) {
  return std::make_shared<Inventory>(std::make_unique<KernelSource>(), includeVirtual, settleTime);
}

}  // namespace ZEB::ethernet
