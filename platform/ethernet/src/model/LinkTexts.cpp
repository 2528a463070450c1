#include "model/LinkTexts.h"

#include <linux/ethtool.h>

#include <array>
#include <string_view>

namespace ZEB::ethernet {
namespace {

struct Substate {
  std::uint8_t state, substate;
  const char* text;
};

constexpr auto kOperStates = std::to_array<const char*>({
    "in an unknown state",
    "not present",
    "down",
    "the layer below is down",
    "under test",
    "not fully up",
    "up",
});

constexpr auto kStates = std::to_array<const char*>({
    "autonegotiation failed",
    "link training failed",
    "the two ends do not match",
    "bad signal",
    "no cable",
    "cable problem",
    "module memory cannot be read",
    "calibration failed",
    "power budget exceeded",
    "too hot",
    "module problem",
});

constexpr auto kSubstates = std::to_array<Substate>({
    {ETHTOOL_LINK_EXT_STATE_AUTONEG, 1, "no partner detected"},
    {ETHTOOL_LINK_EXT_STATE_AUTONEG, 2, "no acknowledgement"},
    {ETHTOOL_LINK_EXT_STATE_AUTONEG, 3, "next page exchange failed"},
    {ETHTOOL_LINK_EXT_STATE_AUTONEG, 4, "no partner detected at a forced speed"},
    {ETHTOOL_LINK_EXT_STATE_AUTONEG, 5, "error correction does not match"},
    {ETHTOOL_LINK_EXT_STATE_AUTONEG, 6, "no mode in common"},
    {ETHTOOL_LINK_EXT_STATE_LINK_TRAINING_FAILURE, 1, "no frame lock"},
    {ETHTOOL_LINK_EXT_STATE_LINK_TRAINING_FAILURE, 2, "timed out"},
    {ETHTOOL_LINK_EXT_STATE_LINK_TRAINING_FAILURE, 3, "the partner never got ready"},
    {ETHTOOL_LINK_EXT_STATE_LINK_TRAINING_FAILURE, 4, "remote fault"},
    {ETHTOOL_LINK_EXT_STATE_LINK_LOGICAL_MISMATCH, 1, "no block lock"},
    {ETHTOOL_LINK_EXT_STATE_LINK_LOGICAL_MISMATCH, 2, "no alignment marker lock"},
    {ETHTOOL_LINK_EXT_STATE_LINK_LOGICAL_MISMATCH, 3, "lanes not aligned"},
    {ETHTOOL_LINK_EXT_STATE_LINK_LOGICAL_MISMATCH, 4, "firecode error correction not locked"},
    {ETHTOOL_LINK_EXT_STATE_LINK_LOGICAL_MISMATCH, 5, "Reed-Solomon error correction not locked"},
    {ETHTOOL_LINK_EXT_STATE_BAD_SIGNAL_INTEGRITY, 1, "many physical errors"},
    {ETHTOOL_LINK_EXT_STATE_BAD_SIGNAL_INTEGRITY, 2, "unsupported rate"},
    {ETHTOOL_LINK_EXT_STATE_BAD_SIGNAL_INTEGRITY, 3, "reference clock lost"},
    {ETHTOOL_LINK_EXT_STATE_BAD_SIGNAL_INTEGRITY, 4, "loss of signal"},
    {ETHTOOL_LINK_EXT_STATE_CABLE_ISSUE, 1, "unsupported cable"},
    {ETHTOOL_LINK_EXT_STATE_CABLE_ISSUE, 2, "cable test failed"},
    {ETHTOOL_LINK_EXT_STATE_MODULE, 1, "not ready"},
});

}  // namespace

const char* operStateText(std::uint8_t operState) {
  return kOperStates[operState < kOperStates.size() ? operState : 0];
}

std::string extendedStateText(std::uint8_t state, std::optional<std::uint8_t> substate) {
  std::string text = state < kStates.size() ? kStates[state] : "reason " + std::to_string(state);
  for (const Substate& entry : kSubstates) {
    if (entry.state == state && entry.substate == substate) return text + " (" + entry.text + ")";
  }
  return text;
}

}  // namespace ZEB::ethernet
