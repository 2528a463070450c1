#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_map>

#include "snapshot/HostSnapshot.h"

namespace ZEB::ethernet {

/// Where in a snapshot what belongs to an interface is, so that a request for one costs the same on a host of
/// thousands. The snapshot has to outlive it and stay where it is.
class InterfaceIndex {
 public:
  explicit InterfaceIndex(const HostSnapshot& snapshot);
  InterfaceIndex(const InterfaceIndex&) = delete;
  InterfaceIndex& operator=(const InterfaceIndex&) = delete;
  InterfaceIndex(InterfaceIndex&&) = default;
  InterfaceIndex& operator=(InterfaceIndex&&) = default;
  ~InterfaceIndex() = default;

  /// The interface, its members and its master, with their addresses and routes and the host's rules; no link
  /// when it is not there.
  HostSnapshot only(std::uint32_t index) const;

 private:
  using Places = std::unordered_multimap<std::uint32_t, std::size_t>;

  void addLinks(const Places& places, std::uint32_t index, HostSnapshot& part) const;
  void addNetwork(std::uint32_t index, HostSnapshot& part) const;

  const HostSnapshot* _snapshot;
  Places _links, _members, _addresses, _routes;
};

}  // namespace ZEB::ethernet
