#pragma once

#include <cstdint>

namespace ZEB {

/// Operational status of a managed element, with the codes of the CIM value map "OperationalStatus".
enum class operationalStatus : std::uint32_t {
  Unknown = 0,
  Other = 1,
  OK = 2,
  Degraded = 3,
  Stressed = 4,
  PredictiveFailure = 5,
  Error = 6,
  NonRecoverableError = 7,
  Starting = 8,
  Stopping = 9,
  Stopped = 10,
  InService = 11,
  NoContact = 12,
  LostCommunication = 13,
  Aborted = 14,
  Dormant = 15,
  SupportingEntityInError = 16,
  Completed = 17,
  PowerMode = 18,
  Relocating = 19,
};

/// The value map's text for a status, such as "OK" or "Dormant"; "Unknown" for a code outside the map.
const char* opstatusToString(operationalStatus status);

}  // namespace ZEB
