#pragma once

#include <ostream>
#include <span>
#include <string>

namespace ZEB::guest {

/// What a card of the shared server says of itself through Debian's driver, with its cable in and set up.
struct CardFacts {
  std::string name, driver, vendor, device;
  /// Mbit/s; -1 when the driver does not know.
  int speed;
  std::string duplex;
  /// Lines of `ethtool -S`, its heading included.
  int statistics;
  /// What `ethtool` says after "Supports Wake-on"; empty when it says nothing.
  std::string wakeOnLan;
};

inline void PrintTo(const CardFacts& facts, std::ostream* stream) {
  *stream << facts.name;
}

/// One row for every card of testServer().
std::span<const CardFacts> cardFacts();

}  // namespace ZEB::guest
