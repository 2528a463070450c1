#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "Machine.h"

namespace ZEB::test {

/// An alert by its number and what its description says of the occasion; for a port, its address.
using Alert = std::pair<int, std::string>;

/// What has to be sent, worked out from how the machine was when the last pass could read and how it is now.
/// Every setting that lets an alert through is on.
class AlertModel {
 public:
  /// The machine is what a plug-in was loaded on: nothing has happened yet.
  explicit AlertModel(const Machine& machine);

  /// The alerts of a pass that finds this machine, in the order of their texts.
  std::vector<Alert> pass(const Machine& machine);

 private:
  using Identity = std::pair<std::uint32_t, std::string>;  ///< number and name

  struct Member {
    std::string name;
    int status;
    std::string role;
    bool operator==(const Member&) const = default;
  };
  struct Team {
    int raw;     ///< as it is
    int status;  ///< as it is remembered
    std::vector<Member> members;
  };
  struct Port {
    int status;
  };
  struct State {
    std::map<Identity, Port> ports;
    std::map<Identity, Team> teams;
  };

  static State stateOf(const Machine& machine);
  static bool eventBetween(const State& before, const State& now);
  void addPresence(std::vector<Alert>& alerts, const State& now) const;
  static void addPort(std::vector<Alert>& alerts, const std::string& detail, int before, int now);
  static void addTeam(std::vector<Alert>& alerts, const std::string& name, const Team& before,
                      const Team& now);

  State _remembered;
};

}  // namespace ZEB::test
