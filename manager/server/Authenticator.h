// Who a user is, and what they may do.
#pragma once

#include <chrono>
#include <map>
#include <mutex>
#include <optional>
#include <string>

#include "server/ServerSettings.h"

namespace ZebManager {

/// Asks PAM. What it accepted holds for half a minute, so that not every request of a client waits for it.
/// Safe from any thread.
class Authenticator {
 public:
  explicit Authenticator(const ServerSettings& settings);

  struct User {
    std::string name;
    bool mayWrite = false;
  };
  /// The user of an Authorization header; nothing when it is not to be trusted.
  std::optional<User> check(const std::string& authorization);

 private:
  struct Known {
    User user;
    std::chrono::steady_clock::time_point until;
  };

  bool acceptedByPam(const std::string& user, const std::string& password) const;
  std::string digestOf(const std::string& text) const;

  const ServerSettings& _settings;
  std::string _salt;
  std::mutex _mutex;
  std::map<std::string, Known> _known;  // by salted digest of the header
};

}  // namespace ZebManager
