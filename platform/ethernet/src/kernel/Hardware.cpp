#include "kernel/Hardware.h"

extern "C" {
#include <pci/pci.h>
}

#include <algorithm>
#include <vector>

#include "kernel/PciDecoders.h"
#include "kernel/SysFiles.h"

namespace ZEB::ethernet {
namespace {

namespace fs = std::filesystem;

std::string subsystemOf(const fs::path& device) {
  return resolved(device / "subsystem").filename();
}

/// The nearest device of a subsystem, from `device` upwards; an empty path when there is none.
fs::path ancestor(fs::path device, const std::string& subsystem) {
  for (; device.has_relative_path(); device = device.parent_path()) {
    if (subsystemOf(device) == subsystem) return device;
  }
  return {};
}

std::optional<std::uint16_t> virtualFunctionNumber(const fs::path& physical, const fs::path& function) {
  return findEntry(physical, [&](const fs::path& entry) -> std::optional<std::uint16_t> {
    constexpr std::string_view kPrefix = "virtfn";
    const std::string name = entry.filename();
    if (!name.starts_with(kPrefix) || resolved(entry) != function) return std::nullopt;
    return leadingNumber<std::uint16_t>(std::string_view(name).substr(kPrefix.size()));
  });
}

/// The kernel's slot table: the slot whose address, "0000:03:00", is the device's.
std::optional<std::uint16_t> kernelSlot(const fs::path& slots, const std::string& device) {
  return findEntry(slots, [&](const fs::path& slot) -> std::optional<std::uint16_t> {
    if (line(slot / "address") != device) return std::nullopt;
    return leadingNumber<std::uint16_t>(slot.filename().native());
  });
}

void ignoreMessage(char*, ...) {}

/// The library's own file of names and nothing else: no cache in a home directory, no question over the
/// network. It reports through handlers that it only has after its bus access was set up, which is not wanted
/// here.
pci_access* openNames() {
  pci_access* access = pci_alloc();
  access->id_lookup_mode = 0;
  access->warning = ignoreMessage;
  access->debug = ignoreMessage;
  return access;
}

}  // namespace

HardwareReader::HardwareReader(std::filesystem::path root) : _root(std::move(root)) {}

HardwareReader::~HardwareReader() {
  if (_names) pci_cleanup(_names);
}

std::shared_ptr<const HardwareFacts> HardwareReader::read(const LinkFacts& link) {
  if (!link.parentBus || !link.parentDevice) return nullptr;
  auto facts = std::make_shared<HardwareFacts>();
  facts->bus = *link.parentBus;
  facts->device = *link.parentDevice;
  const fs::path device = resolved(_root / "sys/bus" / facts->bus / "devices" / facts->device);
  if (device.empty()) return facts;
  const fs::path own = device / "net" / link.name;
  facts->devicePort = number<std::uint16_t>(own / "dev_port", 10);
  facts->wireless = isThere(own / "phy80211");
  if (const fs::path usb = ancestor(device, "usb"); !usb.empty()) {
    readUsb(usb, *facts);
  } else if (const fs::path function = ancestor(device, "pci"); !function.empty()) {
    readPci(function, *facts);
  }
  return facts;
}

void HardwareReader::readPci(const fs::path& function, HardwareFacts& facts) {
  facts.pci = parsePciAddress(function.filename().string());
  facts.vendorId = number<std::uint16_t>(function / "vendor", 16);
  facts.deviceId = number<std::uint16_t>(function / "device", 16);
  facts.revision = number<std::uint8_t>(function / "revision", 16);
  if (const fs::path physical = resolved(function / "physfn"); !physical.empty()) {
    facts.physicalFunction = parsePciAddress(physical.filename().string());
    facts.virtualFunction = virtualFunctionNumber(physical, function);
  }
  facts.onboardLabel = line(function / "label");
  facts.onboardIndex = number<std::uint16_t>(function / "index", 10);
  if (!facts.onboardIndex) facts.onboardIndex = number<std::uint16_t>(function / "acpi_index", 10);
  const VitalProductData product = decodeVitalProductData(contents(function / "vpd"));
  facts.productName = product.productName;
  facts.partNumber = product.partNumber;
  facts.serialNumber = product.serialNumber;
  readSlot(function, facts);
  lookUpNames(facts);
}

/// The slot of the function or of the nearest bridge above it that sits in one. The kernel's table counts
/// before the firmware's.
void HardwareReader::readSlot(const fs::path& function, HardwareFacts& facts) {
  const std::vector<FirmwareSlot> slots =
      decodeFirmwareSlots(contents(_root / "sys/firmware/dmi/tables/DMI"));
  for (fs::path device = function; device.has_relative_path(); device = device.parent_path()) {
    const auto address = parsePciAddress(device.filename().string());
    if (!address) break;
    const std::string name = device.filename();
    const auto inFirmware = std::ranges::find_if(slots, [&](const FirmwareSlot& slot) {
      return slot.address.domain == address->domain && slot.address.bus == address->bus &&
             slot.address.device == address->device;
    });
    facts.slot = kernelSlot(_root / "sys/bus/pci/slots", name.substr(0, name.find('.')));
    if (!facts.slot && inFirmware != slots.end()) facts.slot = inFirmware->number;
    if (!facts.slot) continue;
    // A card may be a bridge with functions of another kind behind it.
    facts.slotKind = slotKindOf(contents(device / "config"));
    if (!facts.slotKind && inFirmware != slots.end()) facts.slotKind = inFirmware->kind;
    if (!facts.slotKind && isThere(device / "max_link_speed")) facts.slotKind = SlotKind::PciExpress;
    return;
  }
}

void HardwareReader::readUsb(const fs::path& device, HardwareFacts& facts) const {
  // The driver sits on an interface of the device; ids and texts are the device's.
  const fs::path whole = isThere(device / "idVendor") ? device : device.parent_path();
  facts.vendorId = number<std::uint16_t>(whole / "idVendor", 16);
  facts.deviceId = number<std::uint16_t>(whole / "idProduct", 16);
  facts.vendorName = line(whole / "manufacturer");
  facts.deviceName = line(whole / "product");
  facts.serialNumber = line(whole / "serial");
}

void HardwareReader::lookUpNames(HardwareFacts& facts) {
  if (!facts.vendorId || !facts.deviceId) return;
  if (!_names) _names = openNames();
  char text[256];
  const auto look = [&](int what) -> std::optional<std::string> {
    // An unknown id gives a null pointer and not its digits.
    const char* name =
        pci_lookup_name(_names, text, sizeof text, what | PCI_LOOKUP_NO_NUMBERS | PCI_LOOKUP_NO_HWDB,
                        *facts.vendorId, *facts.deviceId);
    return name ? std::optional<std::string>(name) : std::nullopt;
  };
  facts.vendorName = look(PCI_LOOKUP_VENDOR);
  facts.deviceName = look(PCI_LOOKUP_DEVICE);
}

}  // namespace ZEB::ethernet
