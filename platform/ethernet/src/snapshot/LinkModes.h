#pragma once

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace ZEB::ethernet {

/// Link modes as the kernel numbers them; bits beyond those known here are dropped when read.
inline constexpr std::size_t kLinkModeCount = 128;
using LinkModes = std::bitset<kLinkModeCount>;

/// The kernel's name of a mode, such as "1000baseT/Full", and "" for a bit that is unknown or no mode of its
/// own (autonegotiation, pause, port and FEC bits are named too, without speed).
std::string_view linkModeName(std::size_t bit);

/// The bit of a name.
std::optional<std::size_t> linkModeBit(std::string_view name);

/// Mbit/s that a name begins with; 0 for bits that are no mode.
std::uint32_t linkModeSpeed(std::string_view name);

/// What follows "base" up to the duplex: "T", "SR4"; "" for bits that are no mode.
std::string_view linkModeMedium(std::string_view name);

/// Mbit/s of the fastest mode of a set; 0 when there is none.
std::uint32_t fastestSpeed(const LinkModes& modes);

/// The same of those modes whose speed the other set has as well.
std::uint32_t fastestCommonSpeed(const LinkModes& modes, const LinkModes& others);

/// How many bits are modes.
std::size_t countOfModes(const LinkModes& modes);

/// Whether one of them has that speed and is full duplex.
bool hasFullDuplex(const LinkModes& modes, std::uint32_t speed);

inline constexpr std::size_t kLinkModeAutoneg = 6;
inline constexpr std::size_t kLinkModeTwistedPair = 7;
inline constexpr std::size_t kLinkModeFibre = 10;
inline constexpr std::size_t kLinkModeBackplane = 16;

}  // namespace ZEB::ethernet
