#include "records/PortStatistics.h"

#include <array>

namespace ZEB::ethernet {
namespace {

struct TrafficRow {
  ethStats_st::Counter counter;
  std::uint64_t LinkStatistics::*from;
  std::uint64_t ethStats_st::*to;
};

struct ErrorRow {
  ethStats_st::Counter counter;
  std::optional<std::uint64_t> MacStatistics::*from;
  std::uint32_t ethStats_st::*to;
};

constexpr auto kTraffic = std::to_array<TrafficRow>({
    {ethStats_st::kBytesTransmitted, &LinkStatistics::txBytes, &ethStats_st::bytesTransmitted},
    {ethStats_st::kBytesReceived, &LinkStatistics::rxBytes, &ethStats_st::bytesReceived},
    {ethStats_st::kPacketsTransmitted, &LinkStatistics::txPackets, &ethStats_st::packetsTransmitted},
    {ethStats_st::kPacketsReceived, &LinkStatistics::rxPackets, &ethStats_st::packetsReceived},
});

constexpr auto kErrors = std::to_array<ErrorRow>({
    {ethStats_st::kAlignmentErrors, &MacStatistics::alignmentErrors, &ethStats_st::alignmentErrors},
    {ethStats_st::kFcsErrors, &MacStatistics::fcsErrors, &ethStats_st::fcsErrors},
    {ethStats_st::kSingleCollisionFrames, &MacStatistics::singleCollisions,
     &ethStats_st::singleCollisionFrames},
    {ethStats_st::kMultipleCollisionFrames, &MacStatistics::multipleCollisions,
     &ethStats_st::multipleCollisionFrames},
    {ethStats_st::kDeferredTransmissions, &MacStatistics::deferred, &ethStats_st::deferredTransmissions},
    {ethStats_st::kLateCollisions, &MacStatistics::lateCollisions, &ethStats_st::lateCollisions},
    {ethStats_st::kExcessiveCollisions, &MacStatistics::excessiveCollisions,
     &ethStats_st::excessiveCollisions},
    {ethStats_st::kInternalMacTransmitErrors, &MacStatistics::transmitErrors,
     &ethStats_st::internalMacTransmitErrors},
    {ethStats_st::kInternalMacReceiveErrors, &MacStatistics::receiveErrors,
     &ethStats_st::internalMacReceiveErrors},
});

}  // namespace

bool readStatistics(const PortFacts& facts, ethStats_st& statistics) {
  std::uint32_t known = 0;
  for (const TrafficRow& row : kTraffic) {
    if (!facts.link.statistics) break;
    statistics.*row.to = (*facts.link.statistics).*row.from;
    known |= row.counter;
  }
  for (const ErrorRow& row : kErrors) {
    const auto& value = facts.link.ethtool.mac.*row.from;
    if (!value) continue;
    statistics.*row.to = static_cast<std::uint32_t>(*value);  // the property is as wide as this, and wraps
    known |= row.counter;
  }
  if (known == 0) return false;
  statistics.interfaceName = facts.link.name;
  statistics.sampleTime = facts.sampleTime;
  statistics.known = known;
  return true;
}

}  // namespace ZEB::ethernet
