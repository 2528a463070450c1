#pragma once

#include <cstdint>
#include <filesystem>
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
/// are there: questions by the old name may have come too late. The driver is asked for its versions again
/// when the interface or its link comes up, since firmware is loaded and exchanged then.
class DeviceMemory {
 public:
  /// `root` is where "sys" is found.
  explicit DeviceMemory(EthtoolIoctl& ioctl, std::filesystem::path root = "/")
      : _ioctl(ioctl), _root(std::move(root)) {}

  /// Adds what is known to the links, and forgets devices that are not among them.
  void completeAll(std::vector<LinkFacts>& links);
  /// Adds what is known to one link.
  void complete(LinkFacts& link);

  bool empty() const { return _devices.empty(); }
  /// Adds the counters that only drivers know, one by one, to those of interfaces that are still called what
  /// they were.
  void addCounters(std::vector<InterfaceCounters>& interfaces);

 private:
  struct Device {
    std::optional<std::string> bus, name;  ///< tell a device from a later one with the same number
    std::string interface;
    std::uint32_t up = 0;
    std::shared_ptr<const HardwareFacts> hardware;
    std::shared_ptr<const DriverFacts> driver;
    std::optional<CounterPlaces> counters;
    std::optional<HardwareAddress> permanentAddress;  ///< where the link has none: kernels before 5.6
  };

  void complete(LinkFacts& link, std::unique_ptr<HardwareReader>& reader);
  Device& remembered(const LinkFacts& link, std::unique_ptr<HardwareReader>& reader);
  void addCounters(Device& device, MacStatistics& statistics) const;

  EthtoolIoctl& _ioctl;
  std::filesystem::path _root;
  std::shared_ptr<const DriverFacts> _virtual;  ///< of the last virtual interface: many are of one kind
  std::unordered_map<std::uint32_t, Device> _devices;  ///< by interface number; those with hardware only
};

}  // namespace ZEB::ethernet
