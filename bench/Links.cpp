#include "Links.h"

#include <fcntl.h>
#include <libmnl/libmnl.h>
#include <linux/rtnetlink.h>
#include <net/if.h>
#include <poll.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <stdexcept>

namespace ZebBench {
namespace {

constexpr std::size_t kBuffer = std::size_t{64} * 1024;

[[noreturn]] void fail(const std::string& what) {
  throw std::runtime_error(what + ": " + std::strerror(errno));
}

/// A socket stays in the namespace that it was opened in, so the thread that opens it may end.
ZEB::FileDescriptor routingSocketIn(const std::string& nameSpace) {
  ZEB::FileDescriptor socket;
  std::thread([&] {
    const ZEB::FileDescriptor file(::open(("/run/netns/" + nameSpace).c_str(), O_RDONLY | O_CLOEXEC));
    if (file && setns(file.get(), CLONE_NEWNET) == 0)
      socket = ZEB::FileDescriptor(::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_ROUTE));
  }).join();
  if (!socket) fail("namespace " + nameSpace);
  return socket;
}

}  // namespace

Links::Links(const std::string& nameSpace) : _socket(routingSocketIn(nameSpace)) {}

std::uint32_t Links::indexOf(const std::string& name) const {
  ifreq request{};
  name.copy(request.ifr_name, IFNAMSIZ - 1);
  if (ioctl(_socket.get(), SIOCGIFINDEX, &request) != 0) fail("link " + name);
  return static_cast<std::uint32_t>(request.ifr_ifindex);
}

void Links::change(std::uint32_t index, std::uint32_t group, bool up) {
  alignas(nlmsghdr) std::array<char, 512> buffer{};
  nlmsghdr* message = mnl_nlmsg_put_header(buffer.data());
  message->nlmsg_type = RTM_NEWLINK;
  message->nlmsg_flags = NLM_F_REQUEST | NLM_F_ACK;
  auto* link = static_cast<ifinfomsg*>(mnl_nlmsg_put_extra_header(message, sizeof(ifinfomsg)));
  link->ifi_index = static_cast<int>(index);
  link->ifi_change = IFF_UP;
  link->ifi_flags = up ? IFF_UP : 0;
  if (group != 0) mnl_attr_put_u32(message, IFLA_GROUP, group);
  if (send(_socket.get(), message, message->nlmsg_len, 0) < 0) fail("changing a link");
  const ssize_t size = recv(_socket.get(), buffer.data(), buffer.size(), 0);
  const auto* answer = reinterpret_cast<const nlmsghdr*>(buffer.data());
  if (size < static_cast<ssize_t>(sizeof(nlmsghdr) + sizeof(int)) || answer->nlmsg_type != NLMSG_ERROR)
    fail("changing a link");
  errno = -static_cast<const nlmsgerr*>(mnl_nlmsg_get_payload(answer))->error;
  if (errno != 0) fail("changing a link");
}

LinkMessages::LinkMessages() : _socket(::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_ROUTE)) {
  sockaddr_nl own{};
  own.nl_family = AF_NETLINK;
  own.nl_groups = RTMGRP_LINK;
  if (!_socket || bind(_socket.get(), reinterpret_cast<const sockaddr*>(&own), sizeof own) != 0)
    fail("link messages");
  _thread = std::thread([this] { listen(); });
}

LinkMessages::~LinkMessages() {
  _stop = true;
  _thread.join();
}

void LinkMessages::listen() {
  std::array<char, kBuffer> buffer{};
  constexpr int kPatience = 50;  // ms
  while (!_stop) {
    pollfd ready{_socket.get(), POLLIN, 0};
    if (poll(&ready, 1, kPatience) <= 0) continue;
    const Time now = std::chrono::system_clock::now();
    // An overrun is a message too: there were too many to keep.
    (void)recv(_socket.get(), buffer.data(), buffer.size(), MSG_DONTWAIT);
    Time::rep none = 0;
    _first.compare_exchange_strong(none, now.time_since_epoch().count());
  }
}

}  // namespace ZebBench
