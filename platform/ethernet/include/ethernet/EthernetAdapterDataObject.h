#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "common/Logger.h"
#include "common/OperationalStatus.h"
#include "common/Physloc.h"
#include "ethernet/EthernetPort.h"
#include "ethernet/FactsHandle.h"

namespace ZEB {

namespace ethernet {
struct AdapterFacts;
}

/// One adapter: a card or an on-board device with its ports. Getters return 0 when the value is known, and
/// otherwise non-zero with the argument untouched.
class EthernetAdapterDataObject {
 public:
  EthernetAdapterDataObject() = default;
  explicit EthernetAdapterDataObject(const Logger&) {}
  EthernetAdapterDataObject(ethernet::FactsHandle<ethernet::AdapterFacts> facts,
                            std::vector<EthernetPort> portRecords)
      : ports(std::move(portRecords)), _facts(std::move(facts)) {}

  /// Puts newer facts in place, of the adapter and of its ports, as the `refresh` of a port does. Non-zero,
  /// and the old facts stay, when nothing could be read; when no port is left, no getter knows anything.
  int refresh();

  int getManufacturer(std::string& manufacturer) const;
  int getModel(std::string& model) const;
  /// From the vital product data.
  int getpartNumber(std::string& partNumber) const;
  /// The PCI revision, in decimal.
  int getHardwareVersion(std::string& version) const;
  /// Leaves 0 when it is not known.
  int getVendorId(std::uint32_t& vendor) const;
  /// Leaves 0 when it is not known.
  int getDeviceId(std::uint32_t& device) const;
  int getDriverName(std::string& name) const;
  int getDriverVersion(std::string& version) const;
  int getFirmwareVersion(std::string& version) const;
  int getNumberOfPorts(std::uint32_t& count) const;
  /// Dormant when every port is, else OK, Degraded or Error as all, some or none of the others are OK.
  int getAdapterStatus(operationalStatus& status) const;
  int getPhysLoc(physloc_t& location) const;
  /// The location's encoded form.
  int getPhysLocStr(std::string& location) const;

  /// The port of that index, from 0; past the last a record that knows nothing.
  EthernetPort portAt(std::size_t index) const {
    return index < ports.size() ? ports[index] : EthernetPort();
  }

  /// In bus and port order.
  std::vector<EthernetPort> ports;

 private:
  ethernet::FactsHandle<ethernet::AdapterFacts> _facts;
};

}  // namespace ZEB
