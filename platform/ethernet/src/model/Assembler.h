#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <unordered_map>
#include <vector>

#include "model/Facts.h"
#include "model/RouteTables.h"

namespace ZEB::ethernet {

/// Puts a snapshot's parts together, interface by interface.
class Assembler {
 public:
  explicit Assembler(HostSnapshot snapshot);

  /// By interface number; of two links with one number the first stands.
  const std::vector<LinkFacts>& links() const { return _snapshot.links; }
  const LinkFacts* find(std::uint32_t index) const;

  /// The first interface under a VLAN that is none itself; null when the stack ends nowhere or bites its
  /// tail.
  const LinkFacts* carrierOf(const LinkFacts& vlan);

  std::shared_ptr<PortFacts> port(const LinkFacts& link) const { return interface<PortFacts>(link); }
  std::shared_ptr<VlanFacts> vlan(const LinkFacts& link) const { return interface<VlanFacts>(link); }
  std::shared_ptr<TeamFacts> team(const LinkFacts& link) const;

 private:
  struct Membership {
    std::uint32_t index;  ///< the team's
    TeamMember member;
  };

  template <class Facts>
  std::shared_ptr<Facts> interface(const LinkFacts& link) const;
  std::optional<route_t> gatewayOf(const LinkFacts& link) const;
  const RouteFacts* routeOf(std::uint32_t index) const;
  std::span<const AddressFacts> addressesOf(std::uint32_t index) const;

  HostSnapshot _snapshot;
  RouteTables _tables;
  std::vector<Membership> _memberships;
  std::unordered_map<std::uint32_t, const LinkFacts*> _carriers;  ///< of the VLANs that were asked for
};

}  // namespace ZEB::ethernet
