#pragma once

#include <cstdio>

#include "SnapshotBuilder.h"

namespace ZEB::ethernet::test {

/// A function of some card, each number another one.
inline std::string functionOf(unsigned number) {
  char text[32];
  std::snprintf(text, sizeof text, "%04x:%02x:%02x.%x", number >> 16, number >> 8 & 0xFF, number >> 3 & 0x1F,
                number & 7);
  return text;
}

/// Teams of two ports each, with an address and a gateway.
inline HostSnapshot manyTeams(unsigned count) {
  HostSnapshot host;
  for (unsigned i = 0; i < count; ++i) {
    const std::uint32_t team = 2 + 3 * i;
    host.links.push_back(bondLink(team, "bond" + std::to_string(i)));
    for (unsigned member = 0; member < 2; ++member) {
      const std::uint32_t index = team + 1 + member;
      const std::string name = "eth" + std::to_string(index);
      host.links.push_back(memberOf(pciPort(index, name, functionOf(8 * i + member).c_str()), team));
    }
    host.addresses.push_back(addressOn(team, "10.0.0.1"));
    host.routes.push_back({team, *parseIpAddress("10.0.0.254"), 0, 254});
  }
  return host;
}

/// VLANs on a port, each on the one before.
inline HostSnapshot chainOfVlans(unsigned count) {
  HostSnapshot host;
  host.links.push_back(pciPort(2, "eth0", "0000:01:00.0"));
  for (unsigned i = 0; i < count; ++i)
    host.links.push_back(vlanLink(3 + i, "vlan" + std::to_string(i), 2 + i, 1));
  return host;
}

}  // namespace ZEB::ethernet::test
