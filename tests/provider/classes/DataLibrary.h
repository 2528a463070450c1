#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "common/OperationalStatus.h"
#include "common/Physloc.h"

namespace ZEB::test {

/// Answers that the platform libraries never give, put in the place of theirs by the linker while an object
/// of this class lives.
class DataLibrary {
 public:
  DataLibrary();
  ~DataLibrary();
  DataLibrary(const DataLibrary&) = delete;
  DataLibrary& operator=(const DataLibrary&) = delete;

  static DataLibrary* current();

  /// Status of every port.
  std::optional<operationalStatus> portStatus;
  /// Capabilities of every port.
  std::optional<std::vector<std::uint16_t>> capabilities;
  /// How often every port lists its network address.
  std::size_t networkAddressRepeats = 1;
  /// The walk over teams or adapters fails after so many records.
  std::optional<std::size_t> teamsUntilFailure, adaptersUntilFailure;
  /// Place and hardware version of every adapter.
  std::optional<physloc_t> location;
  std::optional<std::string> hardwareVersion;
  /// A kind more than texts in the parts of every location.
  bool unevenLocationInfo = false;
};

}  // namespace ZEB::test
