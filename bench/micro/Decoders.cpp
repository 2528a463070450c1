#include <benchmark/benchmark.h>
#include <linux/ethtool_netlink.h>
#include <linux/genetlink.h>
#include <linux/if_link.h>
#include <linux/rtnetlink.h>
#include <sys/socket.h>

#include <array>

#include "MessageBuilder.h"
#include "netlink/EthtoolDecoders.h"
#include "netlink/RtnlDecoders.h"

// One message of the kernel to facts, each of about the size that the kernel sends.

namespace {

using namespace ZEB::ethernet;
using test::MessageBuilder;

MessageBuilder linkMessage() {
  ifinfomsg header{};
  header.ifi_index = 7;
  header.ifi_flags = 0x11043;
  header.ifi_type = 1;
  const std::array<std::uint64_t, 25> statistics{11, 22, 33, 44};
  const std::array<std::uint32_t, 60> configuration{};
  MessageBuilder family, families, builder;
  family.attribute(1, configuration.data(), sizeof configuration);
  families.nest(2, family).nest(10, family);
  builder.raw(header).text(IFLA_IFNAME, "enp3s0f0").number(IFLA_TXQLEN, 1000u).number(IFLA_OPERSTATE, '\6');
  builder.number(IFLA_LINKMODE, '\0')
      .number(IFLA_MTU, 1500u)
      .number(IFLA_GROUP, 0u)
      .number(IFLA_CARRIER, '\1');
  builder.bytes(IFLA_ADDRESS, {0, 0x1A, 0x2B, 0x3C, 0x4D, 0x5E});
  builder.bytes(IFLA_PERM_ADDRESS, {0, 0x1A, 0x2B, 0x3C, 0x4D, 0x5E});
  builder.attribute(IFLA_STATS64, statistics.data(), sizeof statistics).text(IFLA_QDISC, "mq");
  builder.text(IFLA_PARENT_DEV_NAME, "0000:03:00.0").text(IFLA_PARENT_DEV_BUS_NAME, "pci");
  builder.nest(IFLA_AF_SPEC, families);
  return builder;
}

MessageBuilder linkModesMessage(const EthtoolQuestion& question) {
  const std::array<std::uint32_t, 4> value{0x60, 0}, mask{0x60, 0x8};
  MessageBuilder header, bits, builder;
  header.number(ETHTOOL_A_HEADER_DEV_INDEX, 7u).text(ETHTOOL_A_HEADER_DEV_NAME, "enp3s0f0");
  bits.number(ETHTOOL_A_BITSET_SIZE, 102u).attribute(ETHTOOL_A_BITSET_VALUE, value.data(), sizeof value);
  bits.attribute(ETHTOOL_A_BITSET_MASK, mask.data(), sizeof mask);
  builder.raw(genlmsghdr{question.reply, 1, 0}).nest(question.header, header);
  builder.number(ETHTOOL_A_LINKMODES_AUTONEG, '\1').nest(ETHTOOL_A_LINKMODES_OURS, bits);
  builder.number(ETHTOOL_A_LINKMODES_SPEED, 1000u).number(ETHTOOL_A_LINKMODES_DUPLEX, '\1');
  return builder;
}

void decodesALink(benchmark::State& state) {
  const MessageBuilder message = linkMessage();
  for (auto round : state) benchmark::DoNotOptimize(decodeLink(message.view()));
}
BENCHMARK(decodesALink);

void decodesAnAddress(benchmark::State& state) {
  ifaddrmsg header{};
  header.ifa_family = AF_INET;
  header.ifa_prefixlen = 24;
  header.ifa_index = 7;
  MessageBuilder builder;
  builder.raw(header)
      .bytes(IFA_ADDRESS, {10, 0, 0, 1})
      .bytes(IFA_LOCAL, {10, 0, 0, 1})
      .text(IFA_LABEL, "enp3s0f0");
  builder.number(IFA_FLAGS, 128u);
  for (auto round : state) benchmark::DoNotOptimize(decodeAddress(builder.view()));
}
BENCHMARK(decodesAnAddress);

void decodesLinkModes(benchmark::State& state) {
  const EthtoolQuestion& question = ethtoolQuestions().front();
  const MessageBuilder message = linkModesMessage(question);
  EthtoolFacts facts;
  for (auto round : state) {
    benchmark::DoNotOptimize(ethtoolInterface(question, message.view()));
    mergeEthtool(question, message.view(), facts);
    benchmark::DoNotOptimize(facts);
  }
}
BENCHMARK(decodesLinkModes);

}  // namespace
