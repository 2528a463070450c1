#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace CmpiCpp {

/// A point in time (microseconds since the epoch, UTC) or an interval (microseconds in all).
class CmpiDateTime {
 public:
  CmpiDateTime() = default;
  CmpiDateTime(std::uint64_t microseconds, bool interval)
      : _microseconds(microseconds), _interval(interval) {}

  /// Reads the CIM text form of 25 characters; nothing when the text is not one.
  static std::optional<CmpiDateTime> parse(std::string_view text);

  std::uint64_t microseconds() const { return _microseconds; }
  bool isInterval() const { return _interval; }

  /// The CIM text form: "20260102030405.000006+000" or "00000001020304.000005:000".
  std::string str() const;

  friend bool operator==(const CmpiDateTime&, const CmpiDateTime&) = default;

 private:
  std::uint64_t _microseconds = 0;
  bool _interval = true;
};

}  // namespace CmpiCpp
