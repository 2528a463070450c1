#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace ZEB::test {

/// A machine on paper: interfaces with what is on them, in the words of a recorded snapshot.
class Machine {
 public:
  enum class Kind : std::uint8_t { Port, Team, Vlan };

  /// What of a port changes by itself.
  struct Settings {
    int frameSize = 1500;
    int megabits = 1000;
    bool wakesOnLan = false;
    int driverVersion = 1;
    int firmwareVersion = 1;
    int packets = 1;
  };

  struct Interface {
    Kind kind = Kind::Port;
    std::string name;
    bool up = true;
    bool carrier = true;
    bool backup = false;          ///< of a team's member
    std::uint32_t team = 0;       ///< number of the team that a port is a member of
    std::uint32_t carriedBy = 0;  ///< number of the interface that a VLAN is on
    int card = 0;                 ///< where a port's card sits
    int gateway = 0;              ///< 0 none, 4 or 6
    Settings settings = {};
    std::vector<std::string> addresses = {};

    bool hasLink() const { return up && carrier; }
  };

  /// By interface number.
  std::map<std::uint32_t, Interface> interfaces;

  std::uint32_t add(Interface interface);
  /// An interface that goes takes the VLANs on it along, and leaves its members free.
  void remove(std::uint32_t number);

  /// What tells an interface from all others to a client.
  static std::string addressOf(std::uint32_t number);

  std::vector<std::uint32_t> all(Kind kind) const;
  std::vector<std::uint32_t> membersOf(std::uint32_t team) const;

  /// Writes the snapshot, whole or not at all.
  void play(const std::filesystem::path& file) const;
  /// Leaves a file there that nobody can read.
  static void spoil(const std::filesystem::path& file);

 private:
  static std::string text(std::uint32_t number, const Interface& interface);

  std::uint32_t _next = 2;
};

}  // namespace ZEB::test
