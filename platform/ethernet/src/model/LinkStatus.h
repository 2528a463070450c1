#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "common/OperationalStatus.h"
#include "snapshot/HostSnapshot.h"

namespace ZEB::ethernet {

std::optional<bool> isAdministrativelyUp(const LinkFacts& link);
std::optional<bool> hasCarrier(const LinkFacts& link);

/// Whether nothing is missing: the carrier, what is under the interface, and bonding holding it for up.
bool hasWholeLink(const LinkFacts& link);

/// Dormant when down and while it settles, Error without carrier, Degraded with carrier while the kernel
/// reports the link impaired, else OK. Nothing when flags or carrier are unknown.
std::optional<operationalStatus> portStatus(const LinkFacts& link);

/// As a port's, with a lower layer that is down counting as no carrier.
std::optional<operationalStatus> vlanStatus(const LinkFacts& link);

/// As a port's, and what bonding thinks of the link: Error when it holds it for down, Degraded while it
/// waits.
std::optional<operationalStatus> memberStatus(const LinkFacts& link);

/// How the link is, in a few words; nothing when its flags are unknown.
std::optional<std::string> linkMessage(const LinkFacts& link);

}  // namespace ZEB::ethernet
