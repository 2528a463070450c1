#include "cli/Check.h"

#include <algorithm>
#include <array>
#include <ostream>

#include "cli/Nearest.h"
#include "cli/Printable.h"
#include "cli/TreeModel.h"
#include "tree/Links.h"

namespace ZebManager {
namespace {

enum : std::uint64_t { kGood = 2, kDegraded = 3, kError = 6, kDormant = 15 };

constexpr std::array kWords = {"OK", "WARNING", "CRITICAL", "UNKNOWN"};

struct Counts {
  std::size_t ports = 0, up = 0, down = 0, degraded = 0, off = 0, teams = 0;
  std::vector<std::string> troubles;

  void take(const TreeInterface& interface, const char* trouble) {
    const auto code = interface.status.code;
    if (code == kError) troubles.push_back(interface.name + " " + trouble);
    if (code == kDegraded) troubles.push_back(interface.name + " degraded");
  }
  void takePort(const TreePort& port) {
    ++ports;
    up += port.status.code == kGood;
    down += port.status.code == kError;
    degraded += port.status.code == kDegraded;
    off += port.status.code == kDormant;
    take(port, "without link");
  }
};

Counts count(const Tree& tree) {
  Counts counts;
  for (const TreeCard& card : tree.cards) {
    for (const TreePort& port : card.ports) counts.takePort(port);
  }
  for (const TreeTeam& team : tree.teams) {
    ++counts.teams;
    counts.take(team, "down");
  }
  return counts;
}

/// The status of the whole, for which members count that are included in it.
int statusOfWhole(Namespace& model) {
  int status = kUnknown;
  forEachInstance(model, "ZEB_EthernetCollection", {"GroupOperationalStatus"}, [&](const PropertyView& view) {
    const auto code = view.number("GroupOperationalStatus");
    status = code == kError ? 2 : code == kDegraded ? 1 : code ? 0 : kUnknown;
  });
  return status;
}

std::string performanceData(const Counts& counts) {
  const std::array values = {std::pair("ports", counts.ports),      std::pair("up", counts.up),
                             std::pair("down", counts.down),        std::pair("degraded", counts.degraded),
                             std::pair("switched_off", counts.off), std::pair("teams", counts.teams)};
  std::string text;
  for (const auto& [name, value] : values) text += " " + std::string(name) + "=" + std::to_string(value);
  return text;
}

}  // namespace

int check(const Options& options, const Output& output) {
  int status = kUnknown;
  std::string line;
  try {
    Session session(options);
    const Counts counts = count(readTree(session.model()));
    status = statusOfWhole(session.model());
    line = std::to_string(counts.up) + " of " + std::to_string(counts.ports) + " ports up" +
           (counts.troubles.empty() ? "" : ": " + listed(counts.troubles)) + " |" + performanceData(counts);
  } catch (const std::exception& error) {
    line = error.what();
  }
  output.out << "ETHERNET " << kWords[static_cast<std::size_t>(status)] << " - " << printable(line) << "\n";
  return output.out.flush() ? status : kUnknown;
}

}  // namespace ZebManager
