#include "kernel/Listener.h"

#include <linux/ethtool_netlink.h>
#include <linux/genetlink.h>
#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <poll.h>
#include <sys/socket.h>

#include <cerrno>
#include <iterator>
#include <utility>

#include "netlink/RtnlDecoders.h"

namespace ZEB::ethernet {
namespace {

constexpr std::uint32_t group(unsigned number) {
  return 1u << (number - 1);
}

constexpr std::uint32_t kLayerGroups = RTMGRP_IPV4_IFADDR | RTMGRP_IPV6_IFADDR | RTMGRP_IPV4_ROUTE |
                                       RTMGRP_IPV6_ROUTE | RTMGRP_IPV4_RULE | group(RTNLGRP_IPV6_RULE) |
                                       group(RTNLGRP_NEXTHOP);
// A burst that fits is told apart interface by interface; one that does not is told as "everything".
constexpr int kReceiveBuffer = 4 * 1024 * 1024;
constexpr std::size_t kDatagram = std::size_t{64} * 1024;
// Every announcement of ethtool's begins with the attribute that names the interface; statistics are not
// announced.
constexpr std::uint16_t kEthtoolHeader = ETHTOOL_A_LINKMODES_HEADER;

FileDescriptor openSocket(int protocol, std::uint32_t groups) {
  FileDescriptor socket(::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC | SOCK_NONBLOCK, protocol));
  sockaddr_nl own{};
  own.nl_family = AF_NETLINK;
  own.nl_groups = groups;
  if (!socket || ::bind(socket.get(), reinterpret_cast<const sockaddr*>(&own), sizeof own) != 0)
    return FileDescriptor();
  if (setsockopt(socket.get(), SOL_SOCKET, SO_RCVBUFFORCE, &kReceiveBuffer, sizeof kReceiveBuffer) != 0) {
    (void)setsockopt(socket.get(), SOL_SOCKET, SO_RCVBUF, &kReceiveBuffer, sizeof kReceiveBuffer);
  }
  return socket;
}

template <class Visit>
void forEachMessage(Bytes datagram, Visit visit) {
  while (const auto header = leading<nlmsghdr>(datagram)) {
    if (header->nlmsg_len < sizeof *header || header->nlmsg_len > datagram.size()) return;
    visit(header->nlmsg_type, datagram.subspan(sizeof *header, header->nlmsg_len - sizeof *header));
    datagram = following(datagram, header->nlmsg_len);
  }
}

void addInterface(Announcements& announced, std::optional<std::uint32_t> index) {
  if (index && *index != 0) {
    announced.interfaces.insert(*index);
  } else {
    announced.everything = true;
  }
}

void addRoute(Announcements& announced, Bytes payload) {
  const auto routes = decodeDefaultRoute(payload);
  // One without a gateway that is known here may still replace one that was.
  announced.everything |= routes.empty();
  announced.routes = true;
  for (const RouteFacts& route : routes) announced.interfaces.insert(route.index);
}

}  // namespace

void Announcements::add(const Announcements& more) {
  everything |= more.everything;
  routes |= more.routes;
  nextHops |= more.nextHops;
  rules |= more.rules;
  interfaces.insert(more.interfaces.begin(), more.interfaces.end());
}

Announcements routingAnnouncement(Bytes datagram) {
  Announcements announced;
  forEachMessage(datagram, [&](std::uint16_t type, Bytes payload) {
    if (!isRelevant(type, payload)) return;
    switch (type) {
      case RTM_NEWLINK:
      case RTM_DELLINK: {
        const auto header = leading<ifinfomsg>(payload);
        addInterface(announced,
                     header ? std::optional(static_cast<std::uint32_t>(header->ifi_index)) : std::nullopt);
        break;
      }
      case RTM_NEWADDR:
      case RTM_DELADDR: {
        const auto header = leading<ifaddrmsg>(payload);
        addInterface(announced, header ? std::optional(header->ifa_index) : std::nullopt);
        break;
      }
      case RTM_NEWROUTE:
      case RTM_DELROUTE:
        addRoute(announced, payload);
        break;
      case RTM_DELNEXTHOP:
        // The IPv4 routes that had it go with it, unannounced.
        announced.nextHops = true;
        break;
      case RTM_NEWRULE:
      case RTM_DELRULE:
        announced.rules = true;
        break;
      default:
        break;
    }
  });
  return announced;
}

Announcements ethtoolAnnouncement(Bytes datagram) {
  static constexpr AttributePolicy kMessage{{kEthtoolHeader, AttributeKind::Nested}};
  static constexpr AttributePolicy kHeader{{ETHTOOL_A_HEADER_DEV_INDEX, AttributeKind::U32}};
  Announcements announced;
  forEachMessage(datagram, [&](std::uint16_t, Bytes payload) {
    const auto nest = Attributes(following(payload, sizeof(genlmsghdr)), kMessage).bytes(kEthtoolHeader);
    addInterface(announced, Attributes(nest.value_or(Bytes{}), kHeader).u32(ETHTOOL_A_HEADER_DEV_INDEX));
  });
  return announced;
}

Listener Listener::open(std::optional<std::uint32_t> ethtoolGroup) {
  FileDescriptor routing = openSocket(NETLINK_ROUTE, RTMGRP_LINK | kLayerGroups);
  if (!ethtoolGroup) return Listener(std::move(routing), std::nullopt);
  FileDescriptor ethtool = openSocket(NETLINK_GENERIC, 0);
  const bool joined = ethtool && setsockopt(ethtool.get(), SOL_NETLINK, NETLINK_ADD_MEMBERSHIP,
                                            &*ethtoolGroup, sizeof *ethtoolGroup) == 0;
  return Listener(std::move(routing), joined ? std::move(ethtool) : FileDescriptor());
}

Listener Listener::toLayers() {
  return Listener(openSocket(NETLINK_ROUTE, kLayerGroups), std::nullopt);
}

Listener::Listener(FileDescriptor routing, std::optional<FileDescriptor> ethtool)
    : _routing(std::move(routing)), _ethtool(std::move(ethtool)), _buffer(kDatagram) {}

bool Listener::wait(int stop) const {
  // A socket that could not be had is left out.
  pollfd ready[] = {{stop, POLLIN, 0}, {_routing.get(), POLLIN, 0}};
  while (::poll(ready, std::size(ready), -1) < 0 && errno == EINTR) {
  }
  return (ready[0].revents & POLLIN) == 0;
}

Announcements Listener::drain() {
  Announcements announced = drain(_routing, routingAnnouncement);
  if (_ethtool) announced.add(drain(*_ethtool, ethtoolAnnouncement));
  return announced;
}

Announcements Listener::drain(const FileDescriptor& socket, Announcements (*read)(Bytes)) {
  Announcements announced;
  if (!socket) {
    announced.everything = true;
    return announced;
  }
  for (bool failed = false;;) {
    const auto size = ::recv(socket.get(), _buffer.data(), _buffer.size(), MSG_DONTWAIT);
    if (size >= 0) {
      announced.add(read(Bytes(_buffer).first(static_cast<std::size_t>(size))));
    } else if (errno == EAGAIN) {
      return announced;
    } else if (errno != EINTR) {
      // An overrun leaves newer announcements behind, and whatever else went wrong is told once: reading goes
      // on. What is told again does not get better.
      announced.everything = true;
      if (errno != ENOBUFS && std::exchange(failed, true)) {
        _deaf = true;
        return announced;
      }
    }
  }
}

}  // namespace ZEB::ethernet
