#pragma once

#include "snapshot/HostSnapshot.h"

/// The parts of a snapshot and the keys that they have in a file, for whoever walks over them: `visit(key,
/// value)` is called for each, `visit.flags` and `visit.operState` for the two numbers that a file has in
/// words. Reading, writing and anonymising go by this one description.
namespace ZEB::ethernet {

template <class Visit>
void describe(LinkStatistics& statistics, Visit& visit) {
  visit("rxPackets", statistics.rxPackets);
  visit("txPackets", statistics.txPackets);
  visit("rxBytes", statistics.rxBytes);
  visit("txBytes", statistics.txBytes);
}

template <class Visit>
void describe(MacStatistics& mac, Visit& visit) {
  visit("alignmentErrors", mac.alignmentErrors);
  visit("fcsErrors", mac.fcsErrors);
  visit("singleCollisions", mac.singleCollisions);
  visit("multipleCollisions", mac.multipleCollisions);
  visit("deferred", mac.deferred);
  visit("lateCollisions", mac.lateCollisions);
  visit("excessiveCollisions", mac.excessiveCollisions);
  visit("transmitErrors", mac.transmitErrors);
  visit("receiveErrors", mac.receiveErrors);
}

template <class Visit>
void describe(AggregatorFacts& aggregator, Visit& visit) {
  visit("id", aggregator.id);
  visit("ports", aggregator.ports);
  visit("actorKey", aggregator.actorKey);
  visit("partnerKey", aggregator.partnerKey);
  visit("partner", aggregator.partner);
}

template <class Visit>
void describe(BondFacts& bond, Visit& visit) {
  visit("mode", bond.mode);
  visit("activeIndex", bond.activeIndex);
  visit("aggregator", bond.aggregator);
}

template <class Visit>
void describe(BondMemberFacts& member, Visit& visit) {
  visit("state", member.state);
  visit("miiStatus", member.miiStatus);
  visit("permanentAddress", member.permanentAddress);
  visit("aggregatorId", member.aggregatorId);
  visit("actorState", member.actorState);
  visit("partnerState", member.partnerState);
}

template <class Visit>
void describe(EthtoolFacts& ethtool, Visit& visit) {
  visit("supported", ethtool.supported);
  visit("advertised", ethtool.advertised);
  visit("partner", ethtool.partner);
  visit("autonegotiation", ethtool.autonegotiation);
  visit("speed", ethtool.speed);
  visit("fullDuplex", ethtool.fullDuplex);
  visit("media", ethtool.media);
  visit("linkDetected", ethtool.linkDetected);
  visit("extendedState", ethtool.extendedState);
  visit("extendedSubstate", ethtool.extendedSubstate);
  visit("wakeOnLanSupported", ethtool.wakeOnLanSupported);
  visit("wakeOnLanEnabled", ethtool.wakeOnLanEnabled);
  visit("eeeSupported", ethtool.eeeSupported);
  visit("eeeEnabled", ethtool.eeeEnabled);
  visit("mac", ethtool.mac);
}

template <class Visit>
void describe(HardwareFacts& hardware, Visit& visit) {
  visit("bus", hardware.bus);
  visit("device", hardware.device);
  visit("pci", hardware.pci);
  visit("physicalFunction", hardware.physicalFunction);
  visit("virtualFunction", hardware.virtualFunction);
  visit("vendorId", hardware.vendorId);
  visit("deviceId", hardware.deviceId);
  visit("vendorName", hardware.vendorName);
  visit("deviceName", hardware.deviceName);
  visit("revision", hardware.revision);
  visit("slot", hardware.slot);
  visit("slotKind", hardware.slotKind);
  visit("onboardIndex", hardware.onboardIndex);
  visit("onboardLabel", hardware.onboardLabel);
  visit("productName", hardware.productName);
  visit("partNumber", hardware.partNumber);
  visit("serialNumber", hardware.serialNumber);
  visit("devicePort", hardware.devicePort);
  visit("wireless", hardware.wireless);
}

template <class Visit>
void describe(DriverFacts& driver, Visit& visit) {
  visit("name", driver.name);
  visit("version", driver.version);
  visit("firmwareVersion", driver.firmwareVersion);
}

template <class Visit>
void describe(LinkFacts& link, Visit& visit) {
  visit("index", link.index);
  visit("name", link.name);
  visit("type", link.type);
  visit.flags("flags", link.flags);
  visit.operState("operState", link.operState);
  visit("carrier", link.carrier);
  visit("mtu", link.mtu);
  visit("address", link.address);
  visit("permanentAddress", link.permanentAddress);
  visit("lowerIndex", link.lowerIndex);
  visit("masterIndex", link.masterIndex);
  visit("kind", link.kind);
  visit("parentBus", link.parentBus);
  visit("parentDevice", link.parentDevice);
  visit("portName", link.portName);
  visit("statistics", link.statistics);
  visit("bond", link.bond);
  visit("bondMember", link.bondMember);
  visit("vlanId", link.vlanId);
  visit("ethtool", link.ethtool);
  visit("hardware", link.hardware);
  visit("driver", link.driver);
}

template <class Visit>
void describe(AddressFacts& address, Visit& visit) {
  visit("index", address.index);
  visit("address", address.address);
  visit("prefixLength", address.prefixLength);
  visit("flags", address.flags);
  visit("protocol", address.protocol);
}

template <class Visit>
void describe(RouteFacts& route, Visit& visit) {
  visit("index", route.index);
  visit("gateway", route.gateway);
  visit("metric", route.metric);
  visit("table", route.table);
}

template <class Visit>
void describe(RuleFacts& rule, Visit& visit) {
  visit("family", rule.family);
  visit("table", rule.table);
}

template <class Visit>
void describe(HostSnapshot& snapshot, Visit& visit) {
  visit("time", snapshot.sampleTime);
  visit("links", snapshot.links);
  visit("addresses", snapshot.addresses);
  visit("routes", snapshot.routes);
  visit("rules", snapshot.rules);
}

}  // namespace ZEB::ethernet
