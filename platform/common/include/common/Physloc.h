#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// What kind of place a `physloc_t` names: the low four bits of its first byte.
enum class PhyslocType : std::uint8_t {
  Unknown = 0,
  PciSlot = 3,
  PciXSlot = 4,
  PciExpressSlot = 5,
  Embedded = 8,
};

/// Where a device sits in the chassis: the type in the low four bits of byte 0, the slot or instance number
/// in bytes 1 (low) and 2 (high), in bytes 3 (low) to 6 what tells several devices in one place apart, the
/// rest zero; and beside them what is printed at the place.
struct physloc_t {
  std::array<std::uint8_t, 8> bytes{};
  std::array<char, 40> label{};  ///< terminated; empty when the place has none

  PhyslocType type() const { return static_cast<PhyslocType>(bytes[0] & 0x0F); }
  std::uint16_t number() const { return static_cast<std::uint16_t>(bytes[1] | bytes[2] << 8); }
  friend bool operator==(const physloc_t&, const physloc_t&) = default;
};

/// The location of something that has none.
inline constexpr physloc_t BMC_physloc_NULL{};

/// A slot (`type` one of the three slot kinds) with the number that the chassis calls it by.
physloc_t makeSlotPhysloc(PhyslocType type, std::uint16_t slot);

/// A device on the system board, with the firmware's instance number, counted from 1, and its label, of which
/// as much is kept as there is room for.
physloc_t makeEmbeddedPhysloc(std::uint16_t instance, std::string_view label = {});

/// The same place for one of several devices in it, told apart by a number; 0 is the place itself.
physloc_t withPart(physloc_t location, std::uint32_t part);

/// Writes the location's encoded form, its bytes in hexadecimal without trailing zero bytes, to `text`
/// (`size` bytes, always terminated); an empty text for `BMC_physloc_NULL`. The label is no part of it.
/// Returns `text`.
char* BMC_physloc_to_str(const physloc_t& location, char* text, std::size_t size);

namespace ZEB {

/// Texts for physical locations. Stateless but for the initialisation that the provider brackets its life
/// with.
class ZEBPhysloc {
 public:
  /// Chassis number that stands for the machine itself.
  static constexpr int kThisChassis = 255;

  static void init(int chassis);
  static void close();

  /// The label where there is one, else "PCI slot 3", "PCI-X slot 3", "PCI Express slot 3", "Embedded device
  /// 1"; empty for any other type.
  static std::string physlocToHWLocation(const physloc_t& location);

  /// The location part by part, from the outermost: texts, and beside each the code that the
  /// "LocationInfoDesc" value map has for its kind. Returns 0, or non-zero for a location of unknown type
  /// (vectors left empty).
  static int createLocationInfoVectors(const physloc_t& location, std::vector<std::string>& texts,
                                       std::vector<std::uint16_t>& codes);
};

}  // namespace ZEB
