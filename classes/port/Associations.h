#pragma once

#include "classes/port/AssociationFrame.h"

namespace ZEB {

// The plain associations of ports and endpoints. What each is called and what its ends are, is the table in
// the source that is named after it.

/// The computer system and an IP endpoint.
struct ZEB_EthIPHostedAccessPoint : PlainAssociation<ZEB_EthIPHostedAccessPoint> {
  using PlainAssociation::PlainAssociation;
  static const AssociationClass kClass;
};

/// A package and the controller that it carries.
struct ZEB_EthernetControllerPhysicalPackageEthernetController
    : PlainAssociation<ZEB_EthernetControllerPhysicalPackageEthernetController> {
  using PlainAssociation::PlainAssociation;
  static const AssociationClass kClass;
};

/// A package and the place where it sits.
struct ZEB_EthernetControllerPhysicalPackageEthernetControllerLocation
    : PlainAssociation<ZEB_EthernetControllerPhysicalPackageEthernetControllerLocation> {
  using PlainAssociation::PlainAssociation;
  static const AssociationClass kClass;
};

/// The computer system and one of its ports.
struct ZEB_EthernetDevice : PlainAssociation<ZEB_EthernetDevice> {
  using PlainAssociation::PlainAssociation;
  static const AssociationClass kClass;
};

/// A LAN endpoint and its counters.
struct ZEB_EthernetLANEndpointStatisticalData : PlainAssociation<ZEB_EthernetLANEndpointStatisticalData> {
  using PlainAssociation::PlainAssociation;
  static const AssociationClass kClass;
};

/// The computer system and a LAN endpoint.
struct ZEB_EthernetLANHostedAccessPoint : PlainAssociation<ZEB_EthernetLANHostedAccessPoint> {
  using PlainAssociation::PlainAssociation;
  static const AssociationClass kClass;
};

/// A controller and one of its ports.
struct ZEB_EthernetPortControllerEthernetPort : PlainAssociation<ZEB_EthernetPortControllerEthernetPort> {
  using PlainAssociation::PlainAssociation;
  static const AssociationClass kClass;
};

/// A port and its counters.
struct ZEB_EthernetPortStatisticalData : PlainAssociation<ZEB_EthernetPortStatisticalData> {
  using PlainAssociation::PlainAssociation;
  static const AssociationClass kClass;
};

/// A port, or one that carries a VLAN, and the LAN endpoint on it.
struct ZEB_EthernetPortToLANEndpoint : PlainAssociation<ZEB_EthernetPortToLANEndpoint> {
  using PlainAssociation::PlainAssociation;
  static const AssociationClass kClass;
};

/// A default gateway and an IP endpoint that uses it.
struct ZEB_EthernetRemoteAccessAvailableToIPEndpoint
    : PlainAssociation<ZEB_EthernetRemoteAccessAvailableToIPEndpoint> {
  using PlainAssociation::PlainAssociation;
  static const AssociationClass kClass;
};

/// The computer system and a default gateway that it uses.
struct ZEB_EthernetRemoteServiceHostedAccessPoint
    : PlainAssociation<ZEB_EthernetRemoteServiceHostedAccessPoint> {
  using PlainAssociation::PlainAssociation;
  static const AssociationClass kClass;
};

/// A LAN endpoint and an IP endpoint that is reached through it.
struct ZEB_IPBindsToEthernetLANEndpoint : PlainAssociation<ZEB_IPBindsToEthernetLANEndpoint> {
  using PlainAssociation::PlainAssociation;
  static const AssociationClass kClass;
};

}  // namespace ZEB
