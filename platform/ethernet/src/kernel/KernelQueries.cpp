#include "kernel/KernelQueries.h"

#include <linux/ethtool_netlink.h>
#include <linux/fib_rules.h>
#include <linux/genetlink.h>
#include <linux/if_addr.h>
#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>

#include "netlink/FamilyDecoder.h"
#include "netlink/RtnlDecoders.h"

namespace ZEB::ethernet {
namespace {

template <class T>
void append(std::vector<T>& all, std::optional<T> one) {
  if (one) all.push_back(std::move(*one));
}

Request ethtoolRequest(std::uint16_t family, const EthtoolQuestion& question,
                       std::optional<std::uint32_t> index) {
  Request request(family, index ? NLM_F_ACK : NLM_F_DUMP);
  request.header(genlmsghdr{question.request, ETHTOOL_GENL_VERSION, 0}).beginNest(question.header);
  if (index) request.u32(ETHTOOL_A_HEADER_DEV_INDEX, *index);
  request.u32(ETHTOOL_A_HEADER_FLAGS, ETHTOOL_FLAG_COMPACT_BITSETS).endNest();
  if (question.statistics != 0) {
    const std::uint32_t group = 1u << ETHTOOL_STATS_ETH_MAC;
    request.beginNest(question.statistics)
        .flag(ETHTOOL_A_BITSET_NOMASK)
        .u32(ETHTOOL_A_BITSET_SIZE, ETHTOOL_STATS_ETH_MAC + 1)
        .u32(ETHTOOL_A_BITSET_VALUE, group)
        .endNest();
  }
  return request;
}

/// A request about links. Without that mask every answer brings the interface's IPv6 counters along, which
/// nobody here reads and which are a third of its size.
Request linkRequest(std::uint16_t flags, std::uint32_t index = 0) {
  Request request(RTM_GETLINK, flags);
  ifinfomsg header{};
  header.ifi_index = static_cast<int>(index);
  request.header(header).u32(IFLA_EXT_MASK, RTEXT_FILTER_SKIP_STATS);
  return request;
}

bool hasHardware(const LinkFacts& link) {
  return link.parentDevice.has_value();
}

}  // namespace

Outcome<std::unique_ptr<KernelQueries>> KernelQueries::open() {
  auto routing = KernelWire::open(NETLINK_ROUTE);
  if (!routing) return routing.failure();
  auto generic = KernelWire::open(NETLINK_GENERIC);
  return std::make_unique<KernelQueries>(std::move(*routing), generic ? std::move(*generic) : nullptr);
}

KernelQueries::KernelQueries(std::unique_ptr<Wire> routing, std::unique_ptr<Wire> generic)
    : _routing(std::move(routing)),
      _generic(generic ? std::make_unique<QuerySocket>(std::move(generic)) : nullptr) {
  if (_generic) findEthtool();
}

template <class Message, class Append>
Outcome<std::vector<Message>> KernelQueries::collect(QuerySocket& socket, Request& request, const char* what,
                                                     Append append) {
  std::vector<Message> all;
  auto failure = socket.ask(
      request, what, [&](std::uint16_t, Bytes payload) { append(all, payload); }, [&] { all.clear(); });
  if (failure) return std::move(*failure);
  return all;
}

void KernelQueries::findEthtool() {
  Request request(GENL_ID_CTRL, NLM_F_ACK);
  request.header(genlmsghdr{CTRL_CMD_GETFAMILY, 1, 0}).text(CTRL_ATTR_FAMILY_NAME, ETHTOOL_GENL_NAME);
  const auto answers = collect<GenericFamily>(
      *_generic, request, "ethtool family",
      [](auto& all, Bytes payload) { append(all, decodeFamily(payload, ETHTOOL_MCGRP_MONITOR_NAME)); });
  // Kernels before 5.6 have no such family.
  if (!answers || answers->empty()) return;
  _ethtoolFamily = answers->front().id;
  _monitorGroup = answers->front().group;
}

Outcome<std::vector<LinkFacts>> KernelQueries::links() {
  Request request = linkRequest(NLM_F_DUMP);
  return collect<LinkFacts>(_routing, request, "links",
                            [](auto& all, Bytes payload) { append(all, decodeLink(payload)); });
}

Outcome<std::vector<LinkFacts>> KernelQueries::link(std::uint32_t index) {
  Request request = linkRequest(NLM_F_ACK, index);
  auto answer = collect<LinkFacts>(_routing, request, "link",
                                   [](auto& all, Bytes payload) { append(all, decodeLink(payload)); });
  if (!answer && answer.failure().code == ENODEV) return std::vector<LinkFacts>{};
  return answer;
}

Outcome<std::vector<LinkFacts>> KernelQueries::members(std::uint32_t master) {
  Request request = linkRequest(NLM_F_DUMP);
  request.u32(IFLA_MASTER, master);
  return collect<LinkFacts>(_routing, request, "members", [&](auto& all, Bytes payload) {
    auto link = decodeLink(payload);
    if (link && link->masterIndex == master) all.push_back(std::move(*link));
  });
}

Outcome<std::vector<InterfaceCounters>> KernelQueries::counters() {
  Request request(RTM_GETSTATS, NLM_F_DUMP);
  if_stats_msg header{};
  header.filter_mask = IFLA_STATS_FILTER_BIT(IFLA_STATS_LINK_64);
  request.header(header);
  return collect<InterfaceCounters>(_routing, request, "counters",
                                    [](auto& all, Bytes payload) { append(all, decodeCounters(payload)); });
}

Outcome<std::vector<AddressFacts>> KernelQueries::addresses(std::optional<std::uint32_t> index) {
  Request request(RTM_GETADDR, NLM_F_DUMP);
  ifaddrmsg header{};
  header.ifa_index = index.value_or(0);
  request.header(header);
  // A kernel without strict checking answers for all interfaces.
  auto addresses = collect<AddressFacts>(_routing, request, "addresses", [&](auto& all, Bytes payload) {
    const auto address = decodeAddress(payload);
    if (address && (!index || address->index == *index)) all.push_back(*address);
  });
  if (!addresses && index && addresses.failure().code == ENODEV) return std::vector<AddressFacts>{};
  return addresses;
}

Outcome<std::vector<RouteFacts>> KernelQueries::routes() {
  auto routes = routesOf(AF_INET);
  if (!routes) return routes;
  const auto more = routesOf(AF_INET6);
  // Without IPv6 in the kernel there are no routes of it.
  if (more) routes->insert(routes->end(), more->begin(), more->end());
  return routes;
}

Outcome<std::vector<RouteFacts>> KernelQueries::routesOf(std::uint8_t family) {
  Request request(RTM_GETROUTE, NLM_F_DUMP);
  rtmsg header{};
  header.rtm_family = family;
  header.rtm_type = RTN_UNICAST;
  request.header(header);
  return collect<RouteFacts>(_routing, request, "routes", [](auto& all, Bytes payload) {
    for (const RouteFacts& route : decodeDefaultRoute(payload)) all.push_back(route);
  });
}

Outcome<std::vector<RuleFacts>> KernelQueries::rules() {
  Request request(RTM_GETRULE, NLM_F_DUMP);
  request.header(fib_rule_hdr{});
  auto rules = collect<RuleFacts>(_routing, request, "rules",
                                  [](auto& all, Bytes payload) { append(all, decodeRule(payload)); });
  if (!rules && rules.failure().code == EOPNOTSUPP) return std::vector<RuleFacts>{};
  if (!rules) return rules;
  std::ranges::sort(*rules);
  rules->erase(std::unique(rules->begin(), rules->end()), rules->end());
  return rules;
}

void KernelQueries::addEthtool(std::vector<LinkFacts>& links) {
  if (!_ethtoolFamily) return;
  const bool hardware = std::ranges::any_of(links, hasHardware);
  for (const EthtoolQuestion& question : ethtoolQuestions()) {
    if (question.hardwareOnly && !hardware) continue;
    askEthtool(question, links, [&](LinkFacts& link, Bytes payload) {
      if (!question.hardwareOnly || hasHardware(link)) mergeEthtool(question, payload, link.ethtool);
    });
  }
}

void KernelQueries::addMacCounters(std::vector<InterfaceCounters>& interfaces) {
  if (!_ethtoolFamily) return;
  for (const EthtoolQuestion& question : ethtoolQuestions()) {
    if (question.statistics == 0) continue;
    askEthtool(question, interfaces, [&](InterfaceCounters& interface, Bytes payload) {
      EthtoolFacts facts;
      mergeEthtool(question, payload, facts);
      interface.mac = facts.mac;
    });
  }
}

/// Calls `merge` with each answer and the one of `interfaces`, in the order of their numbers, that it is
/// about.
template <class Interface, class Merge>
void KernelQueries::askEthtool(const EthtoolQuestion& question, std::vector<Interface>& interfaces,
                               Merge merge) {
  Request request = ethtoolRequest(*_ethtoolFamily, question, std::nullopt);
  const auto take = [&](std::uint16_t, Bytes payload) {
    const auto index = ethtoolInterface(question, payload);
    const auto found =
        index ? std::ranges::lower_bound(interfaces, *index, {}, &Interface::index) : interfaces.end();
    if (found != interfaces.end() && found->index == *index) merge(*found, payload);
  };
  // A repeated answer says the same things anew, so nothing has to be dropped in between.
  (void)_generic->ask(request, "ethtool", take, [] {});
}

void KernelQueries::addEthtool(LinkFacts& link) {
  if (!_ethtoolFamily) return;
  for (const EthtoolQuestion& question : ethtoolQuestions()) {
    if (question.hardwareOnly && !hasHardware(link)) continue;
    Request request = ethtoolRequest(*_ethtoolFamily, question, link.index);
    const auto take = [&](std::uint16_t, Bytes payload) {
      if (ethtoolInterface(question, payload) == link.index) mergeEthtool(question, payload, link.ethtool);
    };
    (void)_generic->ask(request, "ethtool", take, [] {});
  }
}

}  // namespace ZEB::ethernet
