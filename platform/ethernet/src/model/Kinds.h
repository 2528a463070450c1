#pragma once

#include <string_view>

#include "snapshot/HostSnapshot.h"

namespace ZEB::ethernet {

bool isTeam(const LinkFacts& link);
bool isVlan(const LinkFacts& link);

/// An interface of Ethernet type with hardware behind it, on whatever bus, that is no representor of a
/// virtual function's far end. With `includeVirtual` also representors and the virtual kinds that stand for a
/// wire.
bool isPort(const LinkFacts& link, bool includeVirtual);

/// Whether a driver's port name is that of a representor: of a physical function, "pf0", or of a virtual or
/// sub function of it, "pf0vf1", "c1pf0sf4". A port on the outside is "p0".
bool isRepresentorName(std::string_view portName);

}  // namespace ZEB::ethernet
