#include "Habits.h"

#include <cstdlib>
#include <stdexcept>
#include <string>

namespace ZEB::test {

Habits habitsOfEnvironment() {
  const char* profile = std::getenv("ZEB_TEST_MANAGER");
  if (!profile) return kEmbeddedHabits;
  for (const Habits& habits : {kEmbeddedHabits, kGroupHabits, kAgentHabits}) {
    if (std::string(profile) == habits.profile) return habits;
  }
  throw std::invalid_argument(std::string("ZEB_TEST_MANAGER: ") + profile);
}

}  // namespace ZEB::test
