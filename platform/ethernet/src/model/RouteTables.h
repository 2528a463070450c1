#pragma once

#include <cstdint>
#include <set>
#include <span>

#include "snapshot/HostSnapshot.h"

namespace ZEB::ethernet {

/// Which routing tables a host's rules have default routes looked up in.
class RouteTables {
 public:
  enum class Use : std::uint8_t {
    Named,   ///< a rule names the table, or no rule of the family is known
    OfAVrf,  ///< no rule names it, but one those of VRFs, of which it may be one
    None,    ///< the route does not apply
  };

  explicit RouteTables(std::span<const RuleFacts> rules) : _rules(rules.begin(), rules.end()) {}

  Use useOf(const RouteFacts& route) const;

 private:
  std::set<RuleFacts> _rules;
};

}  // namespace ZEB::ethernet
