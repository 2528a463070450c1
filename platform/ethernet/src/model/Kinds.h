#pragma once

#include "snapshot/HostSnapshot.h"

namespace ZEB::ethernet {

bool isTeam(const LinkFacts& link);
bool isVlan(const LinkFacts& link);

/// An interface of Ethernet type with hardware behind it, on whatever bus, that is no representor of a
/// virtual function's far end. With `includeVirtual` also representors and the virtual kinds that stand for a
/// wire.
bool isPort(const LinkFacts& link, bool includeVirtual);

/// Whether a driver's port name is that of a representor, such as "pf0vf1" or "c1pf0sf4".
bool isRepresentorName(std::string_view portName);

}  // namespace ZEB::ethernet
