#include <cstddef>
#include <cstdint>
#include <string_view>

#include "kernel/PciDecoders.h"

using namespace ZEB::ethernet;

/// The bytes as what cards and firmware provide.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const Bytes bytes(reinterpret_cast<const std::byte*>(data), size);
  (void)slotKindOf(bytes);
  (void)decodeVitalProductData(bytes);
  (void)decodeFirmwareSlots(bytes);
  (void)parsePciAddress(std::string_view(reinterpret_cast<const char*>(data), size));
  return 0;
}
