#include "ethernet/EthernetAdapterDataObject.h"

#include "model/Location.h"
#include "model/Model.h"
#include "records/Answer.h"

namespace ZEB {

using namespace ethernet;

namespace {

/// An optional fact of an adapter's hardware or driver; nothing when there is none.
template <class Part, class Value>
std::optional<Value> partFact(const FactsHandle<AdapterFacts>& handle,
                              std::shared_ptr<const Part> AdapterFacts::*part,
                              std::optional<Value> Part::*value) {
  const auto facts = handle.facts();
  if (!facts || !((*facts).*part)) return std::nullopt;
  return (*((*facts).*part)).*value;
}

template <class Value>
std::optional<Value> hardwareFact(const FactsHandle<AdapterFacts>& handle,
                                  std::optional<Value> HardwareFacts::*value) {
  return partFact(handle, &AdapterFacts::hardware, value);
}

int idAnswer(const std::optional<std::uint16_t>& id, std::uint32_t& out) {
  out = id.value_or(0);
  return id ? kKnown : kNotKnown;
}

}  // namespace

int EthernetAdapterDataObject::refresh() {
  const auto before = _facts.facts();
  if (!before || ports.empty()) return kNotKnown;
  std::vector<std::shared_ptr<const PortFacts>> left;
  for (EthernetPort& port : ports) {
    const int result = port.refresh(RefreshPart::Link);
    const auto facts = port.facts();
    if (!facts) return kNotKnown;
    const bool gone = facts->link.name.empty();
    if (result != kKnown && !gone) return kNotKnown;
    if (!gone) left.push_back(facts);
  }
  AdapterFacts newer = left.empty() ? AdapterFacts() : adapterOf(left);
  newer.locationPart = before->locationPart;
  _facts.replace(std::make_shared<const AdapterFacts>(std::move(newer)));
  return left.empty() ? kNotKnown : kKnown;
}

int EthernetAdapterDataObject::getManufacturer(std::string& manufacturer) const {
  return answer(hardwareFact(_facts, &HardwareFacts::vendorName), manufacturer);
}

int EthernetAdapterDataObject::getModel(std::string& model) const {
  const auto product = hardwareFact(_facts, &HardwareFacts::productName);
  return answer(product ? product : hardwareFact(_facts, &HardwareFacts::deviceName), model);
}

int EthernetAdapterDataObject::getpartNumber(std::string& partNumber) const {
  return answer(hardwareFact(_facts, &HardwareFacts::partNumber), partNumber);
}

int EthernetAdapterDataObject::getHardwareVersion(std::string& version) const {
  const auto revision = hardwareFact(_facts, &HardwareFacts::revision);
  return answer(revision ? std::optional(std::to_string(*revision)) : std::nullopt, version);
}

int EthernetAdapterDataObject::getVendorId(std::uint32_t& vendor) const {
  return idAnswer(hardwareFact(_facts, &HardwareFacts::vendorId), vendor);
}

int EthernetAdapterDataObject::getDeviceId(std::uint32_t& device) const {
  return idAnswer(hardwareFact(_facts, &HardwareFacts::deviceId), device);
}

int EthernetAdapterDataObject::getDriverName(std::string& name) const {
  return answer(partFact(_facts, &AdapterFacts::driver, &DriverFacts::name), name);
}

int EthernetAdapterDataObject::getDriverVersion(std::string& version) const {
  return answer(partFact(_facts, &AdapterFacts::driver, &DriverFacts::version), version);
}

int EthernetAdapterDataObject::getFirmwareVersion(std::string& version) const {
  return answer(partFact(_facts, &AdapterFacts::driver, &DriverFacts::firmwareVersion), version);
}

int EthernetAdapterDataObject::getNumberOfPorts(std::uint32_t& count) const {
  return answer(fact(_facts.facts(), [](const auto& f) { return std::optional(f.portCount); }), count);
}

int EthernetAdapterDataObject::getAdapterStatus(operationalStatus& status) const {
  return answer(fact(_facts.facts(), [](const auto& f) { return f.status; }), status);
}

int EthernetAdapterDataObject::getPhysLoc(physloc_t& location) const {
  return answer(fact(_facts.facts(), locationOf), location);
}

int EthernetAdapterDataObject::getPhysLocStr(std::string& text) const {
  physloc_t location;
  if (getPhysLoc(location) != kKnown) return kNotKnown;
  char encoded[2 * sizeof location.bytes + 1];
  text = BMC_physloc_to_str(location, encoded, sizeof encoded);
  return kKnown;
}

}  // namespace ZEB
