#include "broker/AttachedThreads.h"

#include "values/CallMemory.h"
#include "values/Values.h"

namespace ZebManager {

CMPIContext* AttachedThreads::prepare(const Context& context) {
  auto attachment = std::make_unique<Attachment>();
  Arena& arena = attachment->context;
  Context* const prepared = makeHandle<Context>(arena, copyValues(arena, context.body()));
  const std::lock_guard lock(_mutex);
  _attachments.emplace(prepared, std::move(attachment));
  return prepared;
}

CMPIStatus AttachedThreads::attach(const CMPIContext* prepared) {
  const std::lock_guard lock(_mutex);
  const auto found = _attachments.find(prepared);
  if (found == _attachments.end()) return {CMPI_RC_ERR_INVALID_HANDLE, nullptr};
  if (found->second->attached || currentArena()) return {CMPI_RC_ERR_FAILED, nullptr};
  found->second->attached = true;
  exchangeCurrentArena(&found->second->memory);
  return {CMPI_RC_OK, nullptr};
}

CMPIStatus AttachedThreads::detach(const CMPIContext* prepared) {
  const std::lock_guard lock(_mutex);
  const auto found = _attachments.find(prepared);
  if (found == _attachments.end()) return {CMPI_RC_ERR_INVALID_HANDLE, nullptr};
  if (found->second->attached) {
    if (currentArena() != &found->second->memory) return {CMPI_RC_ERR_FAILED, nullptr};
    exchangeCurrentArena(nullptr);
  }
  _attachments.erase(found);
  return {CMPI_RC_OK, nullptr};
}

}  // namespace ZebManager
