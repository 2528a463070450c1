// Who a user is, and what they may do.
#pragma once

#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <string>

#include "server/LoginBackOff.h"
#include "server/LoginLine.h"
#include "server/ServerSettings.h"

namespace ZebManager {

struct User {
  std::string name;
  bool mayWrite = false;
};

/// What became of an Authorization header.
struct Login {
  std::optional<User> user = std::nullopt;
  /// Without a user: the header was not looked at, and may be sent again after so long. Zero: it is wrong.
  std::chrono::seconds later{0};
};

/// Asks the processes that judge logins. What they accepted holds for half a minute, so that not every
/// request of a client waits for it, and such a client is asked for last when many guess. Who guesses waits
/// longer and longer, by user and by client. Safe from any thread.
class Authenticator {
 public:
  using LogLine = std::function<void(const std::string&)>;

  Authenticator(ProcessSource judges, LogLine log);

  /// Who has been let in with it within the last hour.
  std::optional<std::string> knownBefore(const std::string& authorization);
  /// `host`: address of the client; `client`: what it is counted as.
  Login check(const std::string& authorization, const std::string& host, const std::string& client);

  /// From now on nobody is let in whom it does not know already.
  void stop() { _line.stop(); }

 private:
  using Clock = std::chrono::steady_clock;
  struct Known {
    User user;
    Clock::time_point asked;
  };

  std::string digestOf(const std::string& text) const;
  std::chrono::seconds pauseOf(const std::string& user, const std::string& client, Clock::time_point now);
  Login judge(const LoginAttempt& attempt, const std::string& client, bool knownBefore);
  void remember(const std::string& digest, const User& user);
  void noteFailure(const std::string& user, const std::string& client);

  const LogLine _log;
  LoginLine _line;
  std::string _salt;
  std::mutex _mutex;
  std::condition_variable _judged;
  std::map<std::string, Known> _known;  // by salted digest of the header
  std::set<std::string> _underWay;      // likewise
  LoginBackOff _users, _clients;
};

}  // namespace ZebManager
