// The keys of the server's configuration file.
#pragma once

#include <toml++/toml.h>

#include <string>
#include <string_view>

#include "server/ServerSettings.h"

namespace ZebManager {

enum class KeyState { Taken, Unknown, Bad };

struct TakenKey {
  KeyState state;
  std::string expected;  ///< of a bad value: what there should be
};

/// `key`: the section, a dot and the name. Settings change only when the value is taken.
TakenKey takeKey(ServerSettings& settings, std::string_view key, const toml::node& value);

}  // namespace ZebManager
