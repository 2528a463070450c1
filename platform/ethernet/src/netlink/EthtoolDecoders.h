#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "netlink/Attributes.h"
#include "snapshot/HostSnapshot.h"

/// From ethtool's generic netlink replies to facts.
namespace ZEB::ethernet {

/// The first `count` bits of a set in words of 32 bits.
LinkModes linkModes(Bytes words, std::size_t count);

/// Takes in what the other end of a link offers, unless that is nothing.
void mergePartner(const LinkModes& offered, EthtoolFacts& facts);

/// Takes a speed and a duplex mode in, unless they are ethtool's numbers for not knowing.
void mergeSpeed(std::optional<std::uint32_t> speed, std::optional<std::uint8_t> duplex, EthtoolFacts& facts);

/// One kind of question to ethtool, and how its answer is taken in. An answer that lacks or breaks a value
/// leaves it unknown.
struct EthtoolQuestion {
  std::uint8_t request;      ///< ETHTOOL_MSG_*_GET
  std::uint8_t reply;        ///< ETHTOOL_MSG_*_GET_REPLY
  std::uint16_t header;      ///< number of the attribute that names the interface
  std::uint16_t statistics;  ///< number of the attribute that picks the groups; 0 for none
  bool hardwareOnly;         ///< asked of no virtual interface, whose answers say nothing
  void (*merge)(Bytes attributes, EthtoolFacts& facts);
};

/// All questions that are asked.
std::span<const EthtoolQuestion> ethtoolQuestions();

/// The interface that an answer is about. `payload` begins with the generic netlink header.
std::optional<std::uint32_t> ethtoolInterface(const EthtoolQuestion& question, Bytes payload);

/// Takes an answer in. `payload` begins with the generic netlink header.
void mergeEthtool(const EthtoolQuestion& question, Bytes payload, EthtoolFacts& facts);

}  // namespace ZEB::ethernet
