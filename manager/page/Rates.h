// How much goes through ports.
#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <deque>
#include <string>
#include <unordered_map>
#include <vector>

#include "broker/Namespace.h"

namespace ZebManager {

/// Counters of all ports, read once for all who look, and what they grew by. For one thread.
class Rates {
 public:
  enum Kind : std::size_t { BytesIn, BytesOut, PacketsIn, PacketsOut, Errors, Count };
  using Values = std::array<std::uint64_t, Count>;  ///< counters, or rates a second
  using Clock = std::chrono::steady_clock;

  explicit Rates(Namespace& model) : _model(model) {}

  /// From now on they are about these ports, by path. What is known of a path stays. Throws ManagerError.
  void follow(const std::vector<std::string>& ports);
  /// Throws ManagerError.
  void read();
  /// Counters, by place of the port, as they are at a time.
  void take(const std::vector<Values>& counters, Clock::time_point time);

  /// JSON: a list of [place, rates...] of the ports through which something went at the last reading or the
  /// one before it.
  std::string newest() const;
  /// JSON: an object with lists of rates, oldest first, by place of the port. Empty for very many ports.
  std::string history() const;

 private:
  struct Port {
    Values counters{};
    bool known = false;
    std::deque<Values> rates;
  };

  Namespace& _model;
  std::vector<std::string> _paths;
  std::unordered_map<std::string, std::size_t> _places;  ///< of ports, by the path of their counters
  std::unordered_map<std::string, Port> _ports;          ///< by path
  Clock::time_point _time;
};

}  // namespace ZebManager
