#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <vector>

#include "netlink/Attributes.h"
#include "posix/FileDescriptor.h"

namespace ZEB::ethernet {

/// What was announced: some interfaces, or possibly everything.
struct Announcements {
  bool everything = false;
  bool routes = false;    ///< default routes of the interfaces came or went
  bool nextHops = false;  ///< next hops went, and with them default routes, nobody knows which
  bool rules = false;     ///< routing rules came or went
  std::set<std::uint32_t> interfaces;

  bool any() const { return everything || routes || nextHops || rules || !interfaces.empty(); }
  void add(const Announcements& more);
};

/// The interfaces that a routing announcement concerns; those that cannot matter here concern none.
Announcements routingAnnouncement(Bytes datagram);

/// The same for an announcement of ethtool's.
Announcements ethtoolAnnouncement(Bytes datagram);

/// Hears the kernel announce changes of links, addresses, default routes, routing rules and link settings.
class Listener {
 public:
  /// Without `ethtoolGroup`, link settings are not announced.
  static Listener open(std::optional<std::uint32_t> ethtoolGroup);
  /// Hears addresses, default routes and routing rules alone.
  static Listener toLayers();

  /// On sockets that announcements come from. Without `ethtool`, link settings are not announced. Where a
  /// socket is none, everything counts as announced all the time.
  Listener(FileDescriptor routing, std::optional<FileDescriptor> ethtool);

  /// Whether there is a socket to hear on, and nothing wrong with it that does not pass.
  bool hears() const { return _routing && !_deaf; }

  /// Waits until something may have been announced or `stop` becomes readable; whether it was not the latter.
  bool wait(int stop) const;

  /// Takes in all that waits, without waiting. Lost announcements count as everything.
  Announcements drain();

 private:
  Announcements drain(const FileDescriptor& socket, Announcements (*read)(Bytes));

  FileDescriptor _routing;
  std::optional<FileDescriptor> _ethtool;
  std::vector<std::byte> _buffer;
  bool _deaf = false;
};

}  // namespace ZEB::ethernet
