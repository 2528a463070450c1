#include "kernel/ParentDevices.h"

#include "kernel/SysFiles.h"

namespace ZEB::ethernet {
namespace {

/// Virtual interfaces are of a kind and have no device; the ports of switch chips are of one and do.
bool mayHaveDevice(const LinkFacts& link) {
  return link.kind.empty() || link.kind == "dsa";
}

}  // namespace

void ParentDevices::complete(LinkFacts& link) {
  if (link.parentDevice || !mayHaveDevice(link)) return;
  auto known = _parents.find(link.index);
  if (known == _parents.end()) known = _parents.emplace(link.index, read(link)).first;
  link.parentBus = known->second.bus;
  link.parentDevice = known->second.device;
}

void ParentDevices::forget(const Announcements& announced) {
  if (announced.everything) _parents.clear();
  for (const std::uint32_t index : announced.interfaces) _parents.erase(index);
}

ParentDevices::Parent ParentDevices::read(const LinkFacts& link) const {
  const auto interface = _root / "sys/class/net" / link.name;
  // By that name sysfs may have another interface: of another namespace, or from before a change of names.
  if (number<std::uint32_t>(interface / "ifindex", 10) != link.index) return {};
  const auto device = resolved(interface / "device");
  if (device.empty()) return {};
  Parent parent{std::nullopt, device.filename()};
  const auto subsystem = resolved(device / "subsystem");
  if (subsystem.parent_path().filename() == "bus") parent.bus = subsystem.filename();
  return parent;
}

}  // namespace ZEB::ethernet
