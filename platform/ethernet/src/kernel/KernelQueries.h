#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "netlink/EthtoolDecoders.h"
#include "netlink/QuerySocket.h"
#include "snapshot/HostSnapshot.h"
#include "snapshot/Outcome.h"

namespace ZEB::ethernet {

/// The questions that the kernel is asked over netlink. Where an interface number is given, the question is
/// about that interface alone.
class KernelQueries {
 public:
  static Outcome<std::unique_ptr<KernelQueries>> open();
  KernelQueries(std::unique_ptr<Wire> routing, std::unique_ptr<Wire> generic);

  Outcome<std::vector<LinkFacts>> links();
  /// None when there is no such interface.
  Outcome<std::vector<LinkFacts>> link(std::uint32_t index);
  /// The interfaces that are members of that one.
  Outcome<std::vector<LinkFacts>> members(std::uint32_t master);
  /// Of all interfaces, without those that only ethtool knows.
  Outcome<std::vector<InterfaceCounters>> counters();
  Outcome<std::vector<AddressFacts>> addresses(std::optional<std::uint32_t> index);
  /// Default routes. The kernel has no faster way to those of one interface than to walk all.
  Outcome<std::vector<RouteFacts>> routes();
  /// Each once. None on a kernel without rules.
  Outcome<std::vector<RuleFacts>> rules();

  /// Adds what ethtool says to links in the order of their numbers. What it does not say, or not on this
  /// kernel, stays unknown.
  void addEthtool(std::vector<LinkFacts>& links);
  void addEthtool(LinkFacts& link);
  /// Adds the counters that ethtool has in the standard group, to interfaces in the order of their numbers.
  void addMacCounters(std::vector<InterfaceCounters>& interfaces);

  /// Whether the kernel has ethtool's netlink; those before 5.6 have not.
  bool hasEthtool() const { return _ethtoolFamily.has_value(); }
  /// The number of the multicast group that announces changes made through ethtool.
  std::optional<std::uint32_t> ethtoolGroup() const { return _monitorGroup; }

 private:
  template <class Message, class Append>
  Outcome<std::vector<Message>> collect(QuerySocket& socket, Request& request, const char* what,
                                        Append append);
  template <class Interface, class Merge>
  void askEthtool(const EthtoolQuestion& question, std::vector<Interface>& interfaces, Merge merge);
  void findEthtool();
  Outcome<std::vector<RouteFacts>> routesOf(std::uint8_t family);

  QuerySocket _routing;
  std::unique_ptr<QuerySocket> _generic;  ///< null where generic netlink is not to be had
  std::optional<std::uint16_t> _ethtoolFamily;
  std::optional<std::uint32_t> _monitorGroup;
};

}  // namespace ZEB::ethernet
