#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "netlink/Attributes.h"
#include "snapshot/HostSnapshot.h"

/// From bytes that firmware and cards provide to facts. Such bytes are often wrong; what does not hold
/// together is left out.
namespace ZEB::ethernet {

/// What kind of slot a function's configuration space says that it is made for. A space that was only read in
/// part, as without privileges, says nothing.
std::optional<SlotKind> slotKindOf(Bytes configuration);

struct VitalProductData {
  std::optional<std::string> productName, partNumber, serialNumber;
};

/// Nothing when the checksum does not hold; data without one is taken as it is.
VitalProductData decodeVitalProductData(Bytes bytes);

/// A slot in the system's own table (SMBIOS type 9) that knows what sits in it.
struct FirmwareSlot {
  PciAddress address;
  std::uint16_t number = 0;
  std::optional<SlotKind> kind;
};

std::vector<FirmwareSlot> decodeFirmwareSlots(Bytes table);

}  // namespace ZEB::ethernet
