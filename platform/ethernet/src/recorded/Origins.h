#pragma once

#include <span>
#include <string>
#include <string_view>

/// Where the kernel's source takes each fact of a snapshot from.
namespace ZEB::ethernet {

struct Origin {
  std::string_view key;             ///< of the fact in a snapshot file, from the top: "links.ethtool.speed"
  std::string_view from;            ///< message and attribute, file, or request
  std::string_view otherwise = {};  ///< where it is taken when that does not say it, and why; empty: nowhere
};

std::span<const Origin> origins();

/// JSON for programs: of every fact that a snapshot can have its key, two values that it might have, and its
/// origin.
std::string factsAsJson();

}  // namespace ZEB::ethernet
