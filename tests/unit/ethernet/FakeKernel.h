#pragma once

#include <linux/if.h>
#include <linux/if_link.h>
#include <linux/rtnetlink.h>
#include <net/if_arp.h>
#include <sys/socket.h>

#include <cerrno>
#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "FakeDriver.h"
#include "MessageBuilder.h"
#include "kernel/KernelSource.h"

namespace ZEB::ethernet::test {

/// A kernel that answers with the payloads that it was given, has no ethtool's netlink, and announces what
/// tests have it announce.
class FakeKernel {
 public:
  FakeKernel() {
    if (socketpair(AF_UNIX, SOCK_DGRAM | SOCK_NONBLOCK, 0, _pair) != 0)
      throw std::runtime_error("socketpair");
    _announcing = FileDescriptor(_pair[0]);
  }

  std::map<std::uint32_t, MessageBuilder> links;  ///< by interface number
  std::vector<MessageBuilder> addresses, routes, rules, counters;
  std::vector<int> refused;  ///< message types that it does not know
  std::function<void(std::uint16_t type)> whenAsked = [](std::uint16_t) {};
  FakeDriver driver;
  std::map<std::uint16_t, int> dumps;  ///< how many were asked for, by message type

  /// For one source, which it outlives.
  KernelSource source(const std::filesystem::path& root) {
    return KernelSource([this, root] {
      auto queries = std::make_unique<KernelQueries>(std::make_unique<AnsweringWire>(*this),
                                                     std::make_unique<AnsweringWire>(*this));
      return Outcome<KernelAccess>(KernelAccess{
          std::move(queries), Listener(FileDescriptor(_pair[1]), std::nullopt), driver.call(), root});
    });
  }

  void announce(std::uint16_t type, const MessageBuilder& payload) const {
    const auto datagram = payload.message(type, 0);
    if (::send(_announcing.get(), datagram.view().data(), datagram.view().size(), 0) < 0)
      throw std::runtime_error("send");
  }

 private:
  class AnsweringWire : public Wire {
   public:
    explicit AnsweringWire(FakeKernel& kernel) : _kernel(kernel) {}
    int send(Bytes datagram) override {
      _answer = _kernel.answer(datagram);
      return 0;
    }
    std::ptrdiff_t receive(std::span<std::byte> buffer) override {
      std::ranges::copy(_answer.view(), buffer.begin());
      return static_cast<std::ptrdiff_t>(_answer.view().size());
    }

   private:
    FakeKernel& _kernel;
    MessageBuilder _answer;
  };

  MessageBuilder answer(Bytes request) {
    const nlmsghdr header = leading<nlmsghdr>(request).value();
    const bool dump = (header.nlmsg_flags & NLM_F_DUMP) == NLM_F_DUMP;
    dumps[header.nlmsg_type] += dump;
    whenAsked(header.nlmsg_type);
    MessageBuilder answer;
    int result = 0;
    const auto append = [&](std::uint16_t type, const MessageBuilder& payload) {
      answer += payload.message(type, header.nlmsg_seq, NLM_F_MULTI);
    };
    const auto appendAll = [&](std::uint16_t type, const std::vector<MessageBuilder>& payloads) {
      for (const MessageBuilder& payload : payloads) append(type, payload);
    };
    if (header.nlmsg_type == RTM_GETLINK && dump) {
      for (const auto& [index, payload] : links) append(RTM_NEWLINK, payload);
    } else if (std::ranges::count(refused, header.nlmsg_type) > 0) {
      result = -EOPNOTSUPP;
    } else if (header.nlmsg_type == RTM_GETLINK) {
      const auto index = leading<ifinfomsg>(request.subspan(sizeof header)).value().ifi_index;
      const auto found = links.find(static_cast<std::uint32_t>(index));
      if (found != links.end()) append(RTM_NEWLINK, found->second);
      result = found == links.end() ? -ENODEV : 0;
    } else if (header.nlmsg_type == RTM_GETADDR) {
      appendAll(RTM_NEWADDR, addresses);
    } else if (header.nlmsg_type == RTM_GETROUTE) {
      const auto family = leading<rtmsg>(request.subspan(sizeof header)).value().rtm_family;
      for (const MessageBuilder& route : routes)
        if (leading<rtmsg>(route.view())->rtm_family == family) append(RTM_NEWROUTE, route);
    } else if (header.nlmsg_type == RTM_GETRULE) {
      appendAll(RTM_NEWRULE, rules);
    } else if (header.nlmsg_type == RTM_GETSTATS) {
      appendAll(RTM_NEWSTATS, counters);
    } else {
      result = header.nlmsg_type < RTM_BASE ? -EOPNOTSUPP : -ENOENT;
    }
    MessageBuilder closing;
    return answer +=
           closing.raw(result).message(dump && result == 0 ? NLMSG_DONE : NLMSG_ERROR, header.nlmsg_seq);
  }

  int _pair[2];
  FileDescriptor _announcing;
};

/// An Ethernet link that is up, as kernels have announced links since long.
inline MessageBuilder linkPayload(std::uint32_t index, const std::string& name) {
  ifinfomsg header{};
  header.ifi_index = static_cast<int>(index);
  header.ifi_type = ARPHRD_ETHER;
  header.ifi_flags = IFF_UP | IFF_LOWER_UP;
  MessageBuilder builder;
  builder.raw(header).text(IFLA_IFNAME, name).number(IFLA_CARRIER, std::uint8_t{1});
  return builder;
}

inline MessageBuilder kindPayload(std::uint32_t index, const std::string& name, const char* kind) {
  MessageBuilder info, builder = linkPayload(index, name);
  info.text(IFLA_INFO_KIND, kind);
  return builder.nest(IFLA_LINKINFO, info);
}

inline MessageBuilder countersPayload(std::uint32_t index, std::uint64_t received) {
  if_stats_msg header{};
  header.ifindex = index;
  rtnl_link_stats64 statistics{};
  statistics.rx_packets = received;
  MessageBuilder builder;
  return builder.raw(header).number(IFLA_STATS_LINK_64, statistics);
}

inline MessageBuilder addressPayload(std::uint32_t index, std::initializer_list<int> address, int prefix) {
  MessageBuilder builder;
  builder.raw(ifaddrmsg{AF_INET, static_cast<std::uint8_t>(prefix), 0, 0, index});
  return builder.bytes(IFA_LOCAL, address);
}

inline MessageBuilder routePayload(std::uint32_t index, std::initializer_list<int> gateway,
                                   std::uint32_t table = RT_TABLE_MAIN) {
  rtmsg header{};
  header.rtm_family = AF_INET;
  header.rtm_type = RTN_UNICAST;
  MessageBuilder builder;
  builder.raw(header).number(RTA_OIF, index).bytes(RTA_GATEWAY, gateway);
  return builder.number(RTA_TABLE, table);
}

}  // namespace ZEB::ethernet::test
