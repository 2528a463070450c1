#include "History.h"

#include <array>
#include <random>

namespace ZEB::test {
namespace {

using Kind = Machine::Kind;

constexpr std::array kNames{"cable",     "switch",   "join",      "leave",     "swap role",
                            "make team", "del team", "team anew", "make vlan", "del vlan",
                            "address",   "gateway",  "rename",    "unplug",    "plug",
                            "set",       "spoil",    "request",   "pass"};
static_assert(kNames.size() == static_cast<std::size_t>(Step::Kind::Count));

/// Passes come often, so that what happened before each is little.
constexpr std::array kWeights{6, 5, 3, 2, 2, 1, 1, 2, 1, 1, 4, 2, 1, 1, 1, 2, 1, 4, 9};
static_assert(kWeights.size() == kNames.size());

constexpr std::size_t kMostInterfaces = 14;

/// One of several, or 0 when there is none.
std::uint32_t chosen(const std::vector<std::uint32_t>& of, std::uint32_t which) {
  return of.empty() ? 0 : of[which % of.size()];
}

std::vector<std::uint32_t> everyOne(const Machine& machine) {
  std::vector<std::uint32_t> numbers;
  for (const auto& entry : machine.interfaces) numbers.push_back(entry.first);
  return numbers;
}

std::vector<std::uint32_t> members(const Machine& machine) {
  std::vector<std::uint32_t> numbers;
  for (const auto& [number, interface] : machine.interfaces) {
    if (interface.team != 0) numbers.push_back(number);
  }
  return numbers;
}

bool isTaken(const Machine& machine, const std::string& name) {
  for (const auto& [number, interface] : machine.interfaces) {
    if (interface.name == name) return true;
  }
  return false;
}

std::string freeName(const Machine& machine, const std::string& stem) {
  for (int i = 0;; ++i) {
    const std::string name = stem + std::to_string(i);
    if (!isTaken(machine, name)) return name;
  }
}

int freeCard(const Machine& machine) {
  for (int card = 0;; ++card) {
    bool taken = false;
    for (const auto& [number, interface] : machine.interfaces)
      taken |= interface.kind == Kind::Port && interface.card == card;
    if (!taken) return card;
  }
}

void makeTeamAnew(Machine& machine, std::uint32_t number) {
  const Machine::Interface old = machine.interfaces.at(number);
  const auto its = machine.membersOf(number);
  machine.remove(number);
  const std::uint32_t anew = machine.add({.kind = Kind::Team, .name = old.name, .addresses = old.addresses});
  for (const std::uint32_t member : its) machine.interfaces.at(member).team = anew;
}

void toggleAddress(Machine::Interface& interface, std::uint32_t number, std::uint32_t how) {
  const std::string address = how % 2 == 0
                                  ? "10." + std::to_string(number) + ".0." + std::to_string(how % 3 + 1)
                                  : "2001:db8::" + std::to_string(number * 10 + how % 3);
  auto& all = interface.addresses;
  if (std::erase(all, address) == 0) all.push_back(address);
}

void set(Machine::Settings& settings, std::uint32_t how) {
  switch (how % 6) {
    case 0:
      settings.frameSize = settings.frameSize == 1500 ? 1400 : 1500;
      break;
    case 1:
      settings.megabits = settings.megabits == 1000 ? 100 : 1000;
      break;
    case 2:
      settings.wakesOnLan = !settings.wakesOnLan;
      break;
    case 3:
      ++settings.driverVersion;
      break;
    case 4:
      ++settings.firmwareVersion;
      break;
    default:
      ++settings.packets;
  }
}

}  // namespace

std::string Step::text() const {
  return std::string(kNames.at(static_cast<std::size_t>(kind))) + " " + std::to_string(which) + " " +
         std::to_string(how);
}

History randomHistory(std::uint64_t seed, std::size_t steps) {
  std::mt19937_64 random(seed);
  std::discrete_distribution<int> kinds(kWeights.begin(), kWeights.end());
  History history(steps);
  for (Step& step : history) {
    step = {static_cast<Step::Kind>(kinds(random)), static_cast<std::uint32_t>(random() % 1000),
            static_cast<std::uint32_t>(random() % 1000)};
  }
  return history;
}

Machine firstMachine() {
  Machine machine;
  for (int i = 0; i < 4; ++i) machine.add({.name = "eth" + std::to_string(i), .card = i});
  const std::uint32_t team = machine.add({.kind = Kind::Team, .name = "bond0", .addresses = {"10.9.0.1"}});
  machine.interfaces.at(4).team = machine.interfaces.at(5).team = team;
  machine.interfaces.at(2).addresses = {"10.0.0.1"};
  return machine;
}

bool apply(const Step& step, Machine& machine) {
  const auto with = [&](const std::vector<std::uint32_t>& of, auto change) {
    if (const std::uint32_t number = chosen(of, step.which)) change(machine.interfaces.at(number), number);
    return true;
  };
  const bool room = machine.interfaces.size() < kMostInterfaces;
  using enum Step::Kind;
  switch (step.kind) {
    case Cable:
      return with(everyOne(machine), [](auto& one, auto) { one.carrier = !one.carrier; });
    case Switch:
      return with(everyOne(machine), [](auto& one, auto) { one.up = !one.up; });
    case Join:
      return with(machine.all(Kind::Port),
                  [&](auto& port, auto) { port.team = chosen(machine.all(Kind::Team), step.how); });
    case Leave:
      return with(members(machine), [](auto& port, auto) { port.team = 0; });
    case SwapRole:
      return with(members(machine), [](auto& port, auto) { port.backup = !port.backup; });
    case MakeTeam:
      if (room) machine.add({.kind = Kind::Team, .name = freeName(machine, "bond")});
      return true;
    case DeleteTeam:
      return with(machine.all(Kind::Team), [&](auto&, auto number) {
        for (const std::uint32_t member : machine.membersOf(number)) machine.interfaces.at(member).up = false;
        machine.remove(number);
      });
    case MakeTeamAnew:
      return with(machine.all(Kind::Team), [&](auto&, auto number) { makeTeamAnew(machine, number); });
    case MakeVlan:
      if (!room) return true;
      return with(everyOne(machine), [&](auto&, auto number) {
        machine.add({.kind = Kind::Vlan, .name = freeName(machine, "vlan"), .carriedBy = number});
      });
    case DeleteVlan:
      return with(machine.all(Kind::Vlan), [&](auto&, auto number) { machine.remove(number); });
    case Address:
      return with(everyOne(machine), [&](auto& one, auto number) { toggleAddress(one, number, step.how); });
    case Gateway:
      return with(everyOne(machine), [&](auto& one, auto) {
        constexpr int kFamilies[] = {0, 4, 6};
        one.gateway = kFamilies[step.how % 3];
      });
    case Rename:
      return with(everyOne(machine), [&](auto& one, auto) {
        one.name = freeName(machine, "n" + std::to_string(step.how % 7) + "x");
      });
    case Unplug:
      return with(machine.all(Kind::Port), [&](auto&, auto number) { machine.remove(number); });
    case Plug:
      if (room) machine.add({.name = freeName(machine, "eth"), .card = freeCard(machine)});
      return true;
    case Set:
      return with(machine.all(Kind::Port), [&](auto& port, auto) { set(port.settings, step.how); });
    default:
      return false;
  }
}

}  // namespace ZEB::test
