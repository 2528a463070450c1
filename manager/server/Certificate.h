// What the server shows to clients of HTTPS.
#pragma once

#include <string>

#include "server/ServerSettings.h"

namespace ZebManager {

struct Certificate {
  std::string certificate;           ///< PEM
  std::string key;                   ///< PEM
  std::string clientAuthority = {};  ///< PEM: who signs clients' certificates; empty: none are asked for
};

/// The configured one. Without it one that the server has signed itself, made at the first time and kept in
/// the state directory, the key readable to its owner alone; where that cannot be, a line in the log. Throws
/// ManagerError.
Certificate certificateFor(const ServerSettings& settings, const LogLine& log);

}  // namespace ZebManager
