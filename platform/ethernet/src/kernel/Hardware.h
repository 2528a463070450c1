#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "snapshot/HostSnapshot.h"

struct pci_access;

namespace ZEB::ethernet {

/// Reads what sysfs, the firmware's tables and the PCI id database say of the devices behind interfaces. Made
/// when devices have appeared and dropped after they were read, since the tables are large.
class HardwareReader {
 public:
  /// `root` is where "sys" is found, so that tests can have one of their own.
  explicit HardwareReader(std::filesystem::path root = "/");
  ~HardwareReader();
  HardwareReader(const HardwareReader&) = delete;
  HardwareReader& operator=(const HardwareReader&) = delete;

  /// The device that the kernel gave as the link's parent; what cannot be read stays unknown.
  std::shared_ptr<const HardwareFacts> read(const LinkFacts& link);

 private:
  void readPci(const std::filesystem::path& function, HardwareFacts& facts);
  void readSlot(const std::filesystem::path& function, HardwareFacts& facts);
  void readUsb(const std::filesystem::path& device, HardwareFacts& facts) const;
  void lookUpNames(HardwareFacts& facts);

  std::filesystem::path _root;
  pci_access* _names = nullptr;  ///< owned; opened with the first name
};

}  // namespace ZEB::ethernet
