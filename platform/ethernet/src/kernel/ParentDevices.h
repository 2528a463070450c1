#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <unordered_map>

#include "kernel/Listener.h"
#include "snapshot/HostSnapshot.h"

namespace ZEB::ethernet {

/// The devices behind interfaces, as sysfs has them: kernels before 5.14 do not say which they are. sysfs is
/// looked at once for an interface, and anew when something was announced of it.
class ParentDevices {
 public:
  /// `root` is where "sys" is found, so that tests can have one of their own.
  explicit ParentDevices(std::filesystem::path root = "/") : _root(std::move(root)) {}

  /// Adds the device to a link that may have one of which the kernel says nothing.
  void complete(LinkFacts& link);

  void forget(const Announcements& announced);

 private:
  struct Parent {
    std::optional<std::string> bus, device;
  };
  Parent read(const LinkFacts& link) const;

  std::filesystem::path _root;
  std::unordered_map<std::uint32_t, Parent> _parents;  ///< by interface number
};

}  // namespace ZEB::ethernet
