#include "kernel/DeviceMemory.h"

#include <linux/if.h>

#include <algorithm>
#include <utility>

namespace ZEB::ethernet {
namespace {

/// What of its coming up a link has behind it.
std::uint32_t upFlags(const LinkFacts& link) {
  return link.flags.value_or(0) & (IFF_UP | IFF_LOWER_UP);
}

}  // namespace

void DeviceMemory::completeAll(std::vector<LinkFacts>& links) {
  std::unique_ptr<HardwareReader> reader;
  for (LinkFacts& link : links) complete(link, reader);
  std::erase_if(_devices, [&](const auto& entry) {
    return !std::ranges::binary_search(links, entry.first, {}, &LinkFacts::index);
  });
}

void DeviceMemory::complete(LinkFacts& link) {
  std::unique_ptr<HardwareReader> reader;
  complete(link, reader);
}

void DeviceMemory::complete(LinkFacts& link, std::unique_ptr<HardwareReader>& reader) {
  if (!link.parentDevice) {
    // A virtual interface's driver is what its kind is called by; it has nothing else to be asked for.
    if (link.kind.empty()) return;
    if (!_virtual || _virtual->name != link.kind)
      _virtual = std::make_shared<DriverFacts>(DriverFacts{link.kind, {}, {}});
    link.driver = _virtual;
    return;
  }
  Device& device = remembered(link, reader);
  link.hardware = device.hardware;
  link.driver = device.driver;
  if (!link.permanentAddress) link.permanentAddress = device.permanentAddress;
  addCounters(device, link.ethtool.mac);
}

DeviceMemory::Device& DeviceMemory::remembered(const LinkFacts& link,
                                               std::unique_ptr<HardwareReader>& reader) {
  Device& device = _devices[link.index];
  const bool known =
      device.bus == link.parentBus && device.name == link.parentDevice && device.interface == link.name;
  if (!known) {
    if (!reader) reader = std::make_unique<HardwareReader>(_root);
    device = {
        link.parentBus,           link.parentDevice,          link.name, upFlags(link), reader->read(link),
        _ioctl.driver(link.name), _ioctl.counters(link.name), {}};
    if (!link.permanentAddress) device.permanentAddress = _ioctl.permanentAddress(link.name);
    return device;
  }
  const std::uint32_t before = std::exchange(device.up, upFlags(link));
  if ((device.up & ~before) != 0) {
    if (auto driver = _ioctl.driver(link.name)) device.driver = std::move(driver);
  }
  return device;
}

void DeviceMemory::addCounters(std::vector<InterfaceCounters>& interfaces) {
  for (InterfaceCounters& interface : interfaces) {
    const auto known = _devices.find(interface.index);
    if (known != _devices.end()) addCounters(known->second, interface.mac);
  }
}

void DeviceMemory::addCounters(Device& device, MacStatistics& statistics) const {
  const auto lacking = [&](const CounterPlaces::Place& place) { return !(statistics.*place.counter); };
  if (!device.counters || std::ranges::none_of(device.counters->places, lacking)) return;
  if (!_ioctl.readCounters(device.interface, *device.counters, statistics)) {
    device.counters = _ioctl.counters(device.interface);
  }
}

}  // namespace ZEB::ethernet
