#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/ethtool.h>
#include <linux/if.h>
#include <linux/if_tun.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <fstream>
#include <sstream>

#include "KernelSnapshot.h"
#include "Namespace.h"
#include "kernel/EthtoolIoctl.h"
#include "model/Model.h"
#include "posix/FileDescriptor.h"

// What the kernel announces of what is served.

namespace ZEB::test {
namespace {

class Announced {
 public:
  /// Begins when links that just came up are quiet.
  Announced() {
    EXPECT_TRUE(eventually([&] { return (void)_source.readAll(), usleep(100'000), !_source.announced(); }));
  }
  void by(const std::string& command) {
    by(command, [&] { ip(command); });
  }
  template <class Change>
  void by(const std::string& what, Change change) {
    EXPECT_TRUE(eventually([&] { return (void)_source.readAll(), usleep(20'000), !_source.announced(); }));
    change();
    // Some come a moment later: IPv6 addresses are announced once the kernel has made sure of them.
    EXPECT_TRUE(eventually([&] { return _source.announced(); })) << what;
  }
  std::shared_ptr<const Model> model() { return buildModel(std::move(*_source.readAll()), true); }

 private:
  KernelSource _source;
};

TEST(KernelAnnouncements, OfLinksAddressesRoutesAndRules) {
  IN_NAMESPACE([] {
    makePairs(2);
    Announced announced;
    announced.by("link set a0 mtu 1400");
    announced.by("link set a0 address 02:00:00:00:aa:01");
    announced.by("link set b1 down");
    announced.by("link set a1 name renamed");
    announced.by("link add br0 type bridge");
    announced.by("link set renamed master br0");
    announced.by("addr add 10.1.2.3/20 dev a0");
    announced.by("addr add 2001:db8::5/64 dev a0 nodad");
    announced.by("addr change 10.1.2.3/20 dev a0 valid_lft 1000 preferred_lft 1000");
    announced.by("route add default via 10.1.0.1 dev a0");
    announced.by("route add default via 2001:db8::1 dev a0");
    announced.by("route change default via 10.1.0.2 dev a0");
    announced.by("rule add to 192.0.2.0/24 table 77");
    announced.by("-6 rule add to 2001:db8:1::/48 table 77");
    announced.by("rule del to 192.0.2.0/24 table 77");
    announced.by("-6 rule del to 2001:db8:1::/48 table 77");
    announced.by("route del default via 10.1.0.2 dev a0");
    announced.by("route del default via 2001:db8::1 dev a0");
    announced.by("addr del 10.1.2.3/20 dev a0");
    announced.by("addr del 2001:db8::5/64 dev a0");
    announced.by("link del a0");
  });
}

TEST(KernelAnnouncements, OfARouteThatGoesWithItsNextHop) {
  IN_NAMESPACE([] {
    makePairs(1);
    ip("addr add 10.1.2.3/20 dev a0");
    ip("nexthop add id 5 via 10.1.0.1 dev a0");
    ip("route add default nhid 5");
    Announced announced;
    const std::uint32_t index = linkNamed(readAll(), "a0").index;
    ASSERT_TRUE(announced.model()->ports.at(index)->gateway);
    announced.by("nexthop del id 5");
    EXPECT_FALSE(announced.model()->ports.at(index)->gateway);
  });
}

/// A driver whose link settings can be changed.
FileDescriptor makeTap(const char* name) {
  FileDescriptor tap(::open("/dev/net/tun", O_RDWR | O_CLOEXEC));
  ifreq request{};
  std::string(name).copy(request.ifr_name, IFNAMSIZ - 1);
  request.ifr_flags = IFF_TAP | IFF_NO_PI;
  return tap && ::ioctl(tap.get(), TUNSETIFF, &request) == 0 ? std::move(tap) : FileDescriptor();
}

void setSpeed(const std::string& name, std::uint32_t speed) {
  alignas(ethtool_link_settings) std::array<std::byte, 2048> memory{};
  auto* settings = reinterpret_cast<ethtool_link_settings*>(memory.data());
  const EthtoolCall call = kernelEthtool();
  settings->cmd = ETHTOOL_GLINKSETTINGS;
  ASSERT_TRUE(call(name, settings));
  settings->link_mode_masks_nwords = static_cast<std::int8_t>(-settings->link_mode_masks_nwords);
  ASSERT_TRUE(call(name, settings));
  settings->cmd = ETHTOOL_SLINKSETTINGS;
  settings->speed = speed;
  ASSERT_TRUE(call(name, settings));
}

TEST(KernelAnnouncements, OfLinkSettings) {
  IN_NAMESPACE([] {
    const FileDescriptor tap = makeTap("t0");
    if (!tap) GTEST_SKIP() << "no tap devices";
    ip("link set t0 up");
    Announced announced;
    announced.by("another speed", [] { setSpeed("t0", 2500); });
    EXPECT_EQ(linkNamed(readAll(), "t0").ethtool.speed, 2500u);
  });
}

/// The port that the only process in the calling thread's namespace has there.
std::uint32_t onlyRoutingPort() {
  std::ifstream table("/proc/thread-self/net/netlink");
  std::string line;
  std::getline(table, line);
  while (std::getline(table, line)) {
    std::istringstream words(line);
    std::string socket;
    int protocol = -1;
    std::uint32_t port = 0;
    if (words >> socket >> protocol >> port && protocol == NETLINK_ROUTE && port != 0) return port;
  }
  ADD_FAILURE() << "nobody has a port";
  return 0;
}

TEST(KernelAnswers, AreTakenFromTheKernelAlone) {
  IN_NAMESPACE([] {
    KernelQueries queries(std::move(*KernelWire::open(NETLINK_ROUTE)), nullptr);
    ASSERT_EQ(queries.links()->size(), 1u);
    sockaddr_nl other{};
    other.nl_family = AF_NETLINK;
    other.nl_pid = onlyRoutingPort();
    const FileDescriptor forger(::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_ROUTE));
    for (std::uint32_t sequence = 1; sequence <= 20; ++sequence) {
      const nlmsghdr end{NLMSG_HDRLEN, NLMSG_DONE, NLM_F_MULTI, sequence, 0};
      ASSERT_EQ(::sendto(forger.get(), &end, sizeof end, 0, reinterpret_cast<const sockaddr*>(&other),
                         sizeof other),
                static_cast<ssize_t>(sizeof end));
    }
    EXPECT_EQ(queries.links()->size(), 1u);
  });
}

}  // namespace
}  // namespace ZEB::test
