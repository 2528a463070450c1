#include "Length.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "Habits.h"

namespace ZEB::test {

Share shareOfManager() {
  constexpr std::array<std::string_view, 3> kManagers = {kEmbeddedHabits.profile, kGroupHabits.profile,
                                                         kAgentHabits.profile};
  if (!kSanitized || isSoak()) return {};
  const auto own = std::ranges::find(kManagers, habitsOfEnvironment().profile);
  return {static_cast<std::size_t>(own - kManagers.begin()), kManagers.size()};
}

std::vector<std::uint64_t> sharedRounds(std::uint64_t count) {
  const Share share = shareOfManager();
  std::vector<std::uint64_t> rounds;
  for (std::uint64_t round = share.number; round < count; round += share.of) rounds.push_back(round);
  return rounds;
}

}  // namespace ZEB::test
