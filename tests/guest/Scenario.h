#pragma once

#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "Guest.h"
#include "ServedModel.h"

/// What happens to the server, and which alerts have to come of it: the rows of the tests of alerts.
namespace ZEB::guest {

/// An alert as a row names it. `about` is a card or, with any other name, the one team.
struct ExpectedAlert {
  int event;
  std::string about;
  std::string comment;
  /// Of a team; that of a port follows from its place.
  std::string detail = {};
};

struct Step {
  std::function<void(Guest&)> action;
  /// Those of a port, and those of the team, in their order. Between the two there is none: a bond looks at
  /// its members when its own timer says so.
  std::vector<ExpectedAlert> alerts;
  /// What is served afterwards.
  std::vector<std::function<void(ServedModel&)>> served = {};
};

struct Scenario {
  std::string name;
  /// In the guest, before anybody watches; then these have their carrier.
  std::string setUp;
  std::vector<std::string> up;
  /// Event settings other than the defaults, Name=Value.
  std::string settings;
  std::vector<Step> steps;
  /// A card whose status is not to be reported.
  std::string excluded = {};
};

inline void PrintTo(const Scenario& scenario, std::ostream* stream) {
  *stream << scenario.name;
}

/// Everything that is off unless asked for.
inline const std::string kEverything =
    "ActiveAdapterCountChanged=true MemberRoleChanged=true MemberStatusChanged=true MemberJoinedTeam=true "
    "MemberLeftTeam=true InterfaceAvailable=true InterfaceUnAvailable=true";

/// With what the settings and filters leave of them by default, and with all.
std::vector<Scenario> scenarios();
/// One for every setting and for the filter: what is switched off does not come, and the rest does.
std::vector<Scenario> switchedOffScenarios();

}  // namespace ZEB::guest
