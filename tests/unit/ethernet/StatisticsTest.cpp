#include <gtest/gtest.h>

#include "FakeSource.h"
#include "SnapshotBuilder.h"
#include "ethernet/EthernetMRA.h"
#include "records/Inventory.h"

namespace ZEB::ethernet::test {
namespace {

constexpr std::uint64_t kBeyond = std::uint64_t{1} << 32;

TEST(Statistics, ErrorsWrapAtThirtyTwoBitsAndTrafficDoesNot) {
  FakeSource::Host host;
  LinkFacts& link = host.snapshot.links.emplace_back(pciPort(2, "eth0", "0000:01:00.0"));
  link.statistics = LinkStatistics{kBeyond + 1, kBeyond + 2, kBeyond + 3, kBeyond + 4};
  link.ethtool.mac = {kBeyond - 1, kBeyond, kBeyond + 1, kBeyond + 2, kBeyond + 3, kBeyond + 4, kBeyond * 7,
                      ~0ull,       5};
  EthernetMRA source(std::make_shared<Inventory>(std::make_unique<FakeSource>(host), false));
  EthernetAdapterDataObject adapter;
  ASSERT_EQ(source.getFirstData(false, adapter), 0);
  ethStats_st statistics;
  ASSERT_EQ(adapter.ports.at(0).getEthStats(statistics), 0);
  EXPECT_EQ(statistics.packetsReceived, kBeyond + 1);
  EXPECT_EQ(statistics.packetsTransmitted, kBeyond + 2);
  EXPECT_EQ(statistics.bytesReceived, kBeyond + 3);
  EXPECT_EQ(statistics.bytesTransmitted, kBeyond + 4);
  EXPECT_EQ(statistics.alignmentErrors, 0xFFFFFFFFu);
  EXPECT_EQ(statistics.fcsErrors, 0u);
  EXPECT_EQ(statistics.singleCollisionFrames, 1u);
  EXPECT_EQ(statistics.multipleCollisionFrames, 2u);
  EXPECT_EQ(statistics.deferredTransmissions, 3u);
  EXPECT_EQ(statistics.lateCollisions, 4u);
  EXPECT_EQ(statistics.excessiveCollisions, 0u);
  EXPECT_EQ(statistics.internalMacTransmitErrors, 0xFFFFFFFFu);
  EXPECT_EQ(statistics.internalMacReceiveErrors, 5u);
  EXPECT_EQ(statistics.known, 0x1FFFu) << "a counter that has wrapped is known all the same";
}

}  // namespace
}  // namespace ZEB::ethernet::test
