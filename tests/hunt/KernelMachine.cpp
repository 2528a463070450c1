#include "KernelMachine.h"

#include <fcntl.h>
#include <sched.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <stdexcept>
#include <thread>

#include "support/TestFolder.h"

namespace ZEB::test {
namespace {

using Interface = Machine::Interface;
using Kind = Machine::Kind;

/// Many commands of `ip`, one a line. What cannot be done is left out: no route leads through an interface
/// that is down. A batch would end with the first name that it does not know.
void run(const std::string& commands) {
  if (commands.empty()) return;
  const TestFolder folder;
  const std::string file = folder.write("batch", commands);
  (void)!std::system(("while read -r line; do ip $line; done <" + file + " >/dev/null 2>&1").c_str());
}

void runIn(const FileDescriptor& nameSpace, const std::string& commands) {
  if (commands.empty()) return;
  std::thread([&] {
    if (setns(nameSpace.get(), CLONE_NEWNET) == 0) run(commands);
  }).join();
}

std::string farEnd(std::uint32_t number) {
  return "p" + std::to_string(number);
}

std::string addition(std::uint32_t number, const Interface& one, const Machine& now, int farEnds) {
  const std::string begin = "link add ", mac = " address " + Machine::addressOf(number);
  switch (one.kind) {
    case Kind::Team:
      return begin + one.name + mac + " type bond mode active-backup miimon 100\n";
    case Kind::Vlan:
      return begin + "link " + now.interfaces.at(one.carriedBy).name + " name " + one.name + mac +
             " type vlan id " + std::to_string(number) + "\n";
    default:
      return begin + one.name + mac + " type veth peer name " + farEnd(number) + " netns /proc/" +
             std::to_string(getpid()) + "/fd/" + std::to_string(farEnds) + "\n";
  }
}

std::string renaming(const Interface& old, const Interface& one, bool whileUp) {
  if (old.name == one.name) return {};
  const std::string command = "link set " + old.name + " name " + one.name + "\n";
  if (whileUp || !old.up) return command;
  return "link set " + old.name + " down\n" + command + "link set " + one.name + " up\n";
}

/// Kernels before 6.2 name no interface anew that is up.
bool renamesWhileUp() {
  const bool does = std::system(
                        "{ ip link add probed type veth peer name probed-far && ip link set probed up && "
                        "ip link set probed name renamed; } 2>/dev/null") == 0;
  run("link del probed-far\n");
  return does;
}

std::string membership(const Interface& old, const Interface& one, const Machine& now) {
  if (old.team == one.team) return {};
  const std::string set = "link set " + one.name;
  if (one.team == 0) return set + " nomaster\n";
  return set + " down\n" + set + " master " + now.interfaces.at(one.team).name + "\n";
}

std::string addresses(const Interface& old, const Interface& one) {
  std::string commands;
  const auto each = [&](const char* verb, const Interface& with, const Interface& without) {
    for (const std::string& address : with.addresses) {
      if (std::ranges::count(without.addresses, address) != 0) continue;
      const bool isIPv6 = address.find(':') != std::string::npos;
      commands += std::string("address ") + verb + " " + address + (isIPv6 ? "/64" : "/24") + " dev " +
                  one.name + (isIPv6 && with.addresses == one.addresses ? " nodad\n" : "\n");
    }
  };
  each("del", old, one);
  each("add", one, old);
  return commands;
}

std::string gateway(std::uint32_t number, const Interface& old, const Interface& one) {
  if (old.gateway == one.gateway) return {};
  const auto route = [&](const char* verb, int family) {
    return std::string("route ") + verb + " default via " + (family == 4 ? "10.0.0.254" : "2001:db8::fe") +
           " dev " + one.name + " onlink metric " + std::to_string(number) + "\n";
  };
  return (old.gateway != 0 ? route("del", old.gateway) : "") +
         (one.gateway != 0 ? route("add", one.gateway) : "");
}

}  // namespace

KernelMachine::KernelMachine() : _renamesWhileUp(renamesWhileUp()) {
  std::thread([this] {
    if (unshare(CLONE_NEWNET) == 0)
      _farEnds = FileDescriptor(open("/proc/thread-self/ns/net", O_RDONLY | O_CLOEXEC));
  }).join();
  if (!_farEnds) throw std::runtime_error("no namespace");
}

bool KernelMachine::has(const std::string& kind) {
  const bool made = std::system(("ip link add probed type " + kind + " 2>/dev/null").c_str()) == 0;
  if (made) run("link del probed\n");
  return made;
}

void KernelMachine::play(const Machine& before, const Machine& now) {
  std::string here, there;
  for (const auto& [number, old] : before.interfaces) {
    if (!now.interfaces.contains(number)) here += "link del " + old.name + "\n";
  }
  for (const auto& [number, one] : now.interfaces) {
    if (!before.interfaces.contains(number)) here += addition(number, one, now, _farEnds.get());
  }
  for (const auto& [number, one] : now.interfaces) {
    const auto known = before.interfaces.find(number);
    const Interface nothing{.kind = one.kind, .name = one.name, .up = false, .carrier = false};
    const Interface& old = known == before.interfaces.end() ? nothing : known->second;
    here += renaming(old, one, _renamesWhileUp) + membership(old, one, now);
    if (old.up != one.up || old.team != one.team)
      here += "link set " + one.name + (one.up ? " up\n" : " down\n");
    if (one.kind == Kind::Port && old.carrier != one.carrier)
      there += "link set " + farEnd(number) + (one.carrier ? " up\n" : " down\n");
    if (old.settings.frameSize != one.settings.frameSize)
      here += "link set " + one.name + " mtu " + std::to_string(one.settings.frameSize) + "\n";
    here += addresses(old, one) + gateway(number, old, one);
  }
  run(here);
  runIn(_farEnds, there);
}

}  // namespace ZEB::test
