// A server's Ethernet as people think of it: cards with their ports, and teams of ports.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ZebManager {

/// Operational status by its CIM number, and in words; empty words when it is not known at all.
struct TreeStatus {
  std::optional<std::uint64_t> code;
  std::string words;
};

struct TreeAddress {
  std::string address;
  std::optional<std::uint64_t> prefixLength;  ///< nothing for a mask that is no prefix
  std::string mask;                           ///< of IPv4
  std::string origin;                         ///< "Static", "DHCP" …; empty when it is not known
  std::string gateway;                        ///< that is reached from this address
};

/// What ports, teams and VLANs have in common. Empty texts are not known.
struct TreeInterface {
  std::string path;
  std::string name;  ///< the operating system's
  std::string macAddress;
  TreeStatus status;
  std::vector<TreeAddress> addresses;
};

struct TreeVlan : TreeInterface {
  std::uint64_t id = 0;
};

struct TreePort : TreeInterface {
  std::uint64_t number = 0;    ///< on its card, from 1; 0 when it is not known
  std::uint64_t speed = 0;     ///< bits a second; 0 when there is none
  std::uint64_t maxSpeed = 0;  ///< that the port can; 0 when it is not known
  std::optional<bool> fullDuplex;
  std::uint64_t mtu = 0;                  ///< bytes; 0 when it is not known
  std::optional<double> lastStateChange;  ///< seconds since the epoch
  std::string team;                       ///< name of the team that it is a member of
  std::string role;                       ///< in that team
  std::vector<TreeVlan> vlans;
};

struct TreeCard {
  std::string path;
  std::string product;
  std::string manufacturer;
  std::string location;
  std::string driver;
  std::string driverVersion;
  std::string firmware;
  TreeStatus status;
  std::vector<TreePort> ports;
};

struct TreeMember {
  std::string path;  ///< of the port
  std::string port;  ///< its name
  std::string role;
  std::optional<std::uint64_t> roleCode;
  TreeStatus portStatus;    ///< of the port by itself
  TreeStatus memberStatus;  ///< of the port as a member
};

struct TreeTeam : TreeInterface {
  std::string mode;
  std::string redundancy;
  std::optional<std::uint64_t> redundancyCode;
  std::uint64_t speed = 0;
  std::uint64_t mtu = 0;
  std::vector<TreeMember> members;
  std::vector<TreeVlan> vlans;
};

struct Tree {
  std::string host;  ///< name of this machine
  std::string hint;  ///< where there are no cards: what there is
  std::vector<TreeCard> cards;
  std::vector<TreeTeam> teams;
};

class Namespace;

/// Which addresses are read.
enum class TreeAddresses { All, WithGateways };

/// Asks for each class once at most and joins in memory what belongs together, whatever the number of ports.
/// Throws ManagerError that names the class when the plug-in refuses.
Tree readTree(Namespace& model, TreeAddresses addresses = TreeAddresses::All);

}  // namespace ZebManager
