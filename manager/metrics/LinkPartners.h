// What is known of the other ends of cables, in plain values.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ZebManager {

/// What the other end of a port's cable offers. What is not known is none, here and below.
struct PortPartner {
  std::string device;       ///< the port
  std::uint64_t speed = 0;  ///< the largest, bits per second
  std::optional<bool> fullDuplex;
  std::uint64_t common = 0;  ///< the largest that the port can do as well; 0 for none that is known
};

/// A team that speaks LACP.
struct LacpTeamReading {
  std::string device;
  std::optional<std::uint64_t> aggregator;  ///< that carries its traffic
  std::optional<std::uint64_t> ports;       ///< of that
  std::optional<std::uint64_t> actorKey, partnerKey;
  std::string partner;  ///< empty where nobody at the other end speaks it
};

struct LacpMemberReading {
  std::string team;
  std::string device;
  std::optional<std::uint64_t> aggregator;
  std::optional<std::uint64_t> actorState, partnerState;  ///< as bits

  /// Whether the port has heard LACP from its other end lately.
  std::optional<bool> hasPartner() const;
  /// Whether both ends have put the port into the aggregator that it belongs to.
  std::optional<bool> isSynchronized() const;
};

struct LinkPartners {
  std::vector<PortPartner> ports;
  std::vector<LacpTeamReading> teams;
  std::vector<LacpMemberReading> members;
};

/// Of the text that the plug-in makes of them; nothing for what is none.
LinkPartners readPartners(std::string_view text);

/// Asks the plug-in. Throws ManagerError when it refuses.
using AskPartners = std::function<LinkPartners()>;

/// The message that asks the plug-in's process for that text. No CIM-XML begins so.
inline constexpr std::string_view kPartnersMessage = "partners";

}  // namespace ZebManager
