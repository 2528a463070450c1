#include "classes/port/ZEB_EthernetStatistics.h"

#include "classes/port/Known.h"
#include "classes/port/PortDescription.h"
#include "classes/port/PropertyTable.h"
#include "cmpicpp/CmpiFactories.h"

namespace ZEB {

using CmpiCpp::CmpiInstance;

/// A counter that is not known stays 0.
struct ZEB_EthernetStatistics::Reading {
  ZEB_EthernetStatistics& self;
  EthernetPort record;
  ethStats_st counters = {};
};

namespace {

template <class Value>
auto counter(Value ethStats_st::*member) {
  return [member](auto& r) { return r.counters.*member; };
}

}  // namespace

const PropertyRows<ZEB_EthernetStatistics::Reading> ZEB_EthernetStatistics::kProperties{
    P::key("InstanceID"),
    P::string("Caption", &EthernetPort::getPortPciProductStr, orElse("Ethernet Port")),
    P::string("ElementName", sameAs("Caption")),
    P::string(
        "Description", [](Reading& r) { return portDescription(r.record, r.self._controllerNumber); },
        always),
    P::step([](Reading& r) {
      r.record = refreshed(r.self._port, RefreshPart::Counters);
      r.record.getEthStats(r.counters);
    }),
    P::datetime(
        "StatisticTime",
        [](Reading& r) { return CmpiCpp::makeCmpiDateTime(ZEBUtil::getBroker(), r.counters.sampleTime); },
        always),
    P::datetime(
        "SampleInterval",
        [](Reading&) { return CmpiCpp::makeCmpiDateTime(ZEBUtil::getBroker(), std::uint64_t{0}, true); },
        always),
    P::uint64("BytesTransmitted", counter(&ethStats_st::bytesTransmitted), always),
    P::uint64("BytesReceived", counter(&ethStats_st::bytesReceived), always),
    P::uint64("PacketsTransmitted", counter(&ethStats_st::packetsTransmitted), always),
    P::uint64("PacketsReceived", counter(&ethStats_st::packetsReceived), always),
    P::uint32("AlignmentErrors", counter(&ethStats_st::alignmentErrors), always),
    P::uint32("FCSErrors", counter(&ethStats_st::fcsErrors), always),
    P::uint32("SingleCollisionFrames", counter(&ethStats_st::singleCollisionFrames), always),
    P::uint32("MultipleCollisionFrames", counter(&ethStats_st::multipleCollisionFrames), always),
    P::uint32("DeferredTransmissions", counter(&ethStats_st::deferredTransmissions), always),
    P::uint32("LateCollisions", counter(&ethStats_st::lateCollisions), always),
    P::uint32("ExcessiveCollisions", counter(&ethStats_st::excessiveCollisions), always),
    P::uint32("InternalMACTransmitErrors", counter(&ethStats_st::internalMacTransmitErrors), always),
    P::uint32("InternalMACReceiveErrors", counter(&ethStats_st::internalMacReceiveErrors), always),
};

ZEB_EthernetStatistics::ZEB_EthernetStatistics(const Logger& logger, const std::string& nameSpace,
                                               const std::uint32_t& number,
                                               const std::uint32_t& controllerNumber,
                                               const EthernetPort& port)
    : ManagedObject(logger, nameSpace, kClassName, {{"InstanceID", instanceName(kClassName, number)}}),
      _controllerNumber(controllerNumber),
      _port(port) {}

CmpiInstance ZEB_EthernetStatistics::makeInstance() {
  return makeInstanceOf(nullptr);
}

CmpiInstance ZEB_EthernetStatistics::makeInstanceOf(CmpiCpp::CmpiPropertyList wanted) {
  return kProperties.makeInstance(makeObjectPath(), {*this, _port}, wanted);
}

}  // namespace ZEB
