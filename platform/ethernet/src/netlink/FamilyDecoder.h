#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "netlink/Attributes.h"

namespace ZEB::ethernet {

struct GenericFamily {
  std::uint16_t id = 0;
  std::optional<std::uint32_t> group;  ///< number of the multicast group that was looked for
};

/// The controller's answer about a generic netlink family. `payload` begins with the generic netlink header.
std::optional<GenericFamily> decodeFamily(Bytes payload, std::string_view groupName);

}  // namespace ZEB::ethernet
