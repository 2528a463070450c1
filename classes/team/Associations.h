#pragma once

#include "classes/port/AssociationFrame.h"

namespace ZEB {

// The plain associations of teams and adapters. What each is called and what its ends are, is the table in
// the source that is named after it.

/// A controller and its firmware.
struct ZEB_EthernetElementFirmwareIdentity : PlainAssociation<ZEB_EthernetElementFirmwareIdentity> {
  using PlainAssociation::PlainAssociation;
  static const AssociationClass kClass;
};

/// A controller and its driver.
struct ZEB_EthernetElementSoftwareIdentity : PlainAssociation<ZEB_EthernetElementSoftwareIdentity> {
  using PlainAssociation::PlainAssociation;
  static const AssociationClass kClass;
};

/// A team and the LAN endpoint of the team itself or of a VLAN on it.
struct ZEB_EthernetTeamToLANEndpoint : PlainAssociation<ZEB_EthernetTeamToLANEndpoint> {
  using PlainAssociation::PlainAssociation;
  static const AssociationClass kClass;
};

/// The computer system and one of its teams. The path names the team first, the instance the system.
struct ZEB_HostedEthernetTeam : PlainAssociation<ZEB_HostedEthernetTeam> {
  using PlainAssociation::PlainAssociation;
  static const AssociationClass kClass;
};

}  // namespace ZEB
