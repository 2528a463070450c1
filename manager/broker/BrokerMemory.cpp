// Memory of the current call. What is freed early stays until the mark or the call ends: an arena takes
// nothing back in between.
#include <cstdlib>

#include "broker/Broker.h"
#include "values/CallMemory.h"
#include "values/Values.h"

namespace ZebManager {
namespace {

constexpr std::size_t kHeader = alignof(std::max_align_t);  // holds the size, for realloc

CMPIGcStat* mark(const CMPIBroker*, CMPIStatus* status) {
  Arena* const arena = currentArena();
  put(status, arena ? CMPI_RC_OK : CMPI_RC_ERR_FAILED);
  return arena ? const_cast<void*>(arena->mark()) : nullptr;
}

CMPIStatus release(const CMPIBroker*, const CMPIGcStat* mark) {
  Arena* const arena = currentArena();
  if (!arena) return {CMPI_RC_ERR_FAILED, nullptr};
  return {arena->release(mark) ? CMPI_RC_OK : CMPI_RC_ERR_INVALID_HANDLE, nullptr};
}

void* cmpiMalloc(const CMPIBroker*, std::size_t size) {
  Arena* const arena = currentArena();
  if (!arena || size > SIZE_MAX - kHeader) return nullptr;
  auto* const bytes = static_cast<std::byte*>(arena->allocate(size + kHeader));
  std::memcpy(bytes, &size, sizeof size);
  return bytes + kHeader;
}

void* cmpiCalloc(const CMPIBroker* broker, std::size_t count, std::size_t size) {
  std::size_t bytes = 0;
  if (__builtin_mul_overflow(count, size, &bytes)) return nullptr;
  void* const memory = cmpiMalloc(broker, bytes);
  return memory ? std::memset(memory, 0, bytes) : nullptr;
}

void* cmpiRealloc(const CMPIBroker* broker, void* memory, std::size_t size) {
  void* const larger = cmpiMalloc(broker, size);
  if (!larger || !memory) return larger;
  std::size_t old = 0;
  std::memcpy(&old, static_cast<std::byte*>(memory) - kHeader, sizeof old);
  return std::memcpy(larger, memory, std::min(old, size));
}

char* cmpiStrDup(const CMPIBroker* broker, const char* text) {
  if (!text) return nullptr;
  const std::size_t size = std::strlen(text) + 1;
  auto* const copy = static_cast<char*>(cmpiMalloc(broker, size));
  if (copy) std::memcpy(copy, text, size);
  return copy;
}

template <class Object>
void keep(const CMPIBroker*, Object*) {}

}  // namespace

const CMPIBrokerMemFT kBrokerMemFT = {
    CMPIVersion210,
    mark,
    release,
    cmpiMalloc,
    cmpiCalloc,
    cmpiRealloc,
    cmpiStrDup,
    keep<void>,
    keep<CMPIInstance>,
    keep<CMPIObjectPath>,
    keep<CMPIArgs>,
    keep<CMPIString>,
    keep<CMPIArray>,
    keep<CMPIDateTime>,
    keep<CMPISelectExp>,
    keep<char>,
};

}  // namespace ZebManager
