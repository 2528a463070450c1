#include "Guest.h"

#include <algorithm>
#include <optional>
#include <set>
#include <sstream>

#include "Connection.h"
#include "Emulator.h"
#include "GuestError.h"
#include "Monitor.h"

namespace ZEB::guest {
namespace {

using namespace std::chrono_literals;

constexpr auto kStart = 120s;  // A start takes 3 to 8 s on an idle machine.
constexpr auto kPlug = 30s;
constexpr auto kAnswer = 30s;  // Beyond a script's own limit.

/// Loads a driver and names interfaces by their addresses as they come: `adopt DRIVER ADDRESS NAME …`.
constexpr std::string_view kAdopt = R"sh(
adopt() {
  local -A names=()
  local file address link
  modprobe $1
  shift
  while [ $# -gt 0 ]; do names[$1]=$2; shift 2; done
  while [ ${#names[@]} -gt 0 ]; do
    for file in /sys/class/net/*/address; do
      read -r address <$file
      [[ $address && ${names[$address]} ]] || continue
      link=${file%/address}
      echo "link set ${link##*/} name ${names[$address]}"
      unset names[$address]
    done
  done | ip -batch -
}
)sh";

/// Leaves the cards alone, down and without addresses, here and at their partners. What is there is asked of
/// sysfs and changed in one batch, since a process takes its time here.
constexpr std::string_view kReset = R"sh(
shopt -s nullglob
for namespace in /run/netns/*; do [[ $namespace == */partner ]] || ip netns del ${namespace##*/}; done
for group in /sys/class/net/*/netdev_group; do
  read -r number <$group
  [ $number != 1000 ] || { ip link del group 1000; break; }
done
deleted= cards=
for folder in /sys/class/net/*/; do
  link=${folder%/} link=${link##*/}
  if [ -e $folder/device ]; then
    cards+="link set $link down"$'\n'"addr flush dev $link"$'\n'
  elif [ $link != lo ]; then
    deleted+="link del $link"$'\n'
  fi
done
ip -force -batch - <<<"$deleted$cards"
while read -r _ link _; do
  link=${link%%[:@]*}
  case $link in
    *-peer) echo link set $link up; echo addr flush dev $link scope global ;;
    lo) ;;
    *) echo link del $link ;;
  esac
done <<<"$(ip -n partner -o link)" | ip -n partner -force -batch -
for folder in /sys/class/net/*/; do
  [[ -e $folder/device || $folder == */lo/ ]] || exit 1
done
)sh";

}  // namespace

struct Guest::State {
  Hardware hardware;
  Emulator emulator;
  /// From when it was this guest's turn.
  const Deadline started{kStart};
  Monitor monitor;
  /// Nothing once an answer failed to come: the two are out of step for good.
  std::optional<Connection> agent;
  /// Cards in the order of arrival, which settles their addresses; never shrinks.
  std::vector<std::string> names;
  std::set<std::string> later, pulled;

  State(const std::filesystem::path& files, Hardware wanted, FirstProgram first)
      : hardware(std::move(wanted)),
        emulator(files, hardware, first),
        monitor(emulator.monitorSocket(), started),
        agent(std::in_place, emulator.agentSocket(), started) {
    for (const Card& card : hardware.cards) names.push_back(card.name);
  }
};

Guest::Guest(const std::filesystem::path& files, Hardware hardware, FirstProgram first) {
  state_ = std::make_unique<State>(files, std::move(hardware), first);
  try {
    if (state_->agent->readLine(state_->started) != "ready")
      throw GuestError("the agent said something unexpected");
    loadDrivers();
  } catch (const GuestError& error) {
    throw GuestError("the guest does not start: " + std::string(error.what()) + state_->emulator.lastWords());
  }
}

Guest::~Guest() {
  try {
    state_->monitor.command("quit");
  } catch (const GuestError&) {
    // It hung up instead of answering, or is killed below.
  }
  state_->emulator.awaitEnd(10s);
}

void Guest::loadDrivers() {
  std::ostringstream script;
  script << kAdopt << "set -e\nip netns add partner\nip -n partner link set lo up\n";
  const auto& cards = state_->hardware.cards;
  for (const Card& card : cards) script << "modprobe " << card.model.driver << "\n";
  script << "adopt virtio_net";
  for (const Card& card : cards) {
    script << " " << addressOf(card.name) << " " << card.name;
    if (card.partner) script << " " << partnerAddressOf(card.name) << " " << card.name << "-peer";
  }
  script << "\nip -batch - <<END\n";
  for (const Card& card : cards) {
    if (card.partner) script << "link set " << card.name << "-peer netns partner\n";
  }
  script << "END\n";
  must(script.str(), 60s);
}

Result Guest::run(std::string_view script, std::chrono::seconds limit) {
  if (!state_->agent) throw GuestError("the guest stopped answering before");
  const Deadline deadline(limit + kAnswer);
  try {
    Connection& agent = *state_->agent;
    std::ostringstream request;
    request << "run " << limit.count() << " " << script.size() << "\n" << script;
    agent.send(request.str(), deadline);
    std::istringstream answer(agent.readLine(deadline));
    std::string done;
    Result result;
    size_t output = 0, errors = 0;
    answer >> done >> result.status >> output >> errors;
    if (!answer || done != "done") throw GuestError("not an answer of the agent: " + answer.str());
    result.output = agent.read(output, deadline);
    result.errors = agent.read(errors, deadline);
    return result;
  } catch (const GuestError& error) {
    state_->agent.reset();
    throw GuestError(error.what() + state_->emulator.lastWords());
  }
}

std::string Guest::must(std::string_view script, std::chrono::seconds limit) {
  Result result = run(script, limit);
  if (result.status != 0) {
    throw GuestError("status " + std::to_string(result.status) + " of\n" + std::string(script) + "\n" +
                     result.output + result.errors);
  }
  return std::move(result.output);
}

bool Guest::await(std::string_view script, std::chrono::seconds limit) {
  std::ostringstream loop;
  loop << "until (\n"
       << script << "\n) </dev/null >/dev/null 2>&1; do\n"
       << "  [ $SECONDS -lt " << limit.count() << " ] || exit 1\n  sleep 0.05\ndone";
  return run(loop.str(), limit + 10s).status == 0;
}

void Guest::setLink(const std::string& card, bool connected) {
  state_->monitor.command("set_link " + card + (connected ? " on" : " off"));
  connected ? (void)state_->pulled.erase(card) : (void)state_->pulled.insert(card);
}

void Guest::plug(const Card& card) {
  const auto known = std::ranges::find(state_->names, card.name);
  const size_t number = static_cast<size_t>(known - state_->names.begin()) + 1;
  if (known == state_->names.end()) state_->names.push_back(card.name);
  state_->monitor.command("netdev_add " + netdevArgument(card, number));
  state_->monitor.command("device_add " + deviceArgument(card, number));
  state_->later.insert(card.name);
  std::ostringstream script;
  script << kAdopt << "adopt " << card.model.driver << " " << cardAddress(number) << " " << card.name;
  must(script.str(), kPlug);
}

void Guest::unplug(const std::string& card) {
  state_->monitor.command("device_del " + card);
  state_->monitor.awaitRemoval(card, Deadline(kPlug));
  state_->monitor.command("netdev_del " + card + "-cable");
  state_->later.erase(card);
  state_->pulled.erase(card);
}

size_t Guest::numberOf(const std::string& card) const {
  const auto found = std::ranges::find(state_->names, card);
  if (found == state_->names.end()) throw GuestError("no card " + card);
  return static_cast<size_t>(found - state_->names.begin()) + 1;
}

std::string Guest::addressOf(const std::string& card) const {
  return cardAddress(numberOf(card));
}
std::string Guest::partnerAddressOf(const std::string& card) const {
  return partnerAddress(numberOf(card));
}

void Guest::reset() {
  for (const std::string& card : std::set(state_->later)) unplug(card);
  for (const std::string& card : std::set(state_->pulled)) setLink(card, true);
  must(kReset, 60s);
}

const std::filesystem::path& Guest::results() const {
  return state_->emulator.results();
}

}  // namespace ZEB::guest
