#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Machine.h"

namespace ZEB::test {

/// One thing that happens. What the choices mean depends on how the machine is then, so that a history stays
/// one when steps are left out.
struct Step {
  enum class Kind : std::uint8_t {
    Cable,
    Switch,
    Join,
    Leave,
    SwapRole,
    MakeTeam,
    DeleteTeam,
    MakeTeamAnew,
    MakeVlan,
    DeleteVlan,
    Address,
    Gateway,
    Rename,
    Unplug,
    Plug,
    Set,
    Spoil,
    Request,
    Pass,
    Count
  };
  Kind kind;
  std::uint32_t which;  ///< chooses among what there is
  std::uint32_t how;

  std::string text() const;
};

using History = std::vector<Step>;

History randomHistory(std::uint64_t seed, std::size_t steps);

/// Four ports, two of them in a team, with addresses.
Machine firstMachine();

/// Does a step that is one of the machine's; false for every other.
bool apply(const Step& step, Machine& machine);

}  // namespace ZEB::test
