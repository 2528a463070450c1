#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

#include "GuestFixture.h"

namespace ZEB::guest {

/// Fixture of tests that look at what zeb-capture reads in the guest.
class CaptureFixture : public GuestFixture {
 protected:
  static nlohmann::json capture();
  /// One interface of a capture; throws when there is none of that name.
  static nlohmann::json linkOf(const nlohmann::json& snapshot, const std::string& name);
};

}  // namespace ZEB::guest
