#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

#include "kernel/EthtoolIoctl.h"
#include "kernel/Hardware.h"
#include "snapshot/HostSnapshot.h"

namespace ZEB::ethernet {

/// Remembers what does not change while a device lives: its hardware, its driver and where the driver keeps
/// its counters. Asks for it when a device is seen first and when it was renamed, as most are as soon as they
/// are there: questions by the old name may have come too late. A firmware's version that is not known is
/// asked for again when the interface comes up, since some drivers load the firmware only then.
class DeviceMemory {
 public:
  /// Adds what is known to the links, and forgets devices that are not among them.
  void completeAll(std::vector<LinkFacts>& links);
  /// Adds what is known to one link.
  void complete(LinkFacts& link);

  bool empty() const { return _devices.empty(); }
  /// Adds the counters that only drivers know to those of interfaces that are still called what they were.
  void addCounters(std::vector<InterfaceCounters>& interfaces);

 private:
  struct Device {
    std::optional<std::string> bus, name;  ///< tell a device from a later one with the same number
    std::string interface;
    bool up = false;
    std::shared_ptr<const HardwareFacts> hardware;
    std::shared_ptr<const DriverFacts> driver;
    std::optional<CounterPlaces> counters;
  };

  void complete(LinkFacts& link, std::unique_ptr<HardwareReader>& reader);
  Device& remembered(const LinkFacts& link, std::unique_ptr<HardwareReader>& reader);
  void addCounters(Device& device, MacStatistics& statistics) const;

  EthtoolIoctl _ioctl;
  std::unordered_map<std::uint32_t, Device> _devices;  ///< by interface number; those with hardware only
};

}  // namespace ZEB::ethernet
