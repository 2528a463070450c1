// Who a user is, and what they may do.
#pragma once

#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <string>

#include "server/ClientCertificate.h"
#include "server/FailureLog.h"
#include "server/LoginBackOff.h"
#include "server/LoginLine.h"
#include "server/ServerSettings.h"

namespace ZebManager {

struct User {
  std::string name;
  bool mayWrite = false;
};

/// What became of an Authorization header, or of a certificate.
struct Login {
  std::optional<User> user = std::nullopt;
  /// Without a user: it was not looked at, and may be sent again after so long. Zero: it is wrong.
  std::chrono::seconds later{0};
};

/// Asks the processes that judge logins, also whether the account of a certificate's user is valid. What they
/// accepted holds for half a minute, so that not every request of a client waits for it, and such a client is
/// asked for last when many guess. Who guesses waits longer and longer, by user and by client. Safe from any
/// thread.
class Authenticator {
 public:
  using LogLine = std::function<void(const std::string&)>;

  Authenticator(ProcessSource judges, LogLine log);

  /// Who has been let in with it within the last hour.
  std::optional<std::string> knownBefore(const std::string& authorization);
  std::optional<std::string> knownBefore(const ShownCertificate& certificate);
  /// `host`: address of the client; `client`: what it is counted as.
  Login check(const std::string& authorization, const std::string& host, const std::string& client);
  Login check(const ShownCertificate& certificate, const std::string& host, const std::string& client);

  /// From now on nobody is let in whom it does not know already.
  void stop() { _line.stop(); }

 private:
  using Clock = std::chrono::steady_clock;
  struct Known {
    User user;
    Clock::time_point asked;
    std::set<std::string> hosts = {};  ///< that the log has named
  };
  /// What is judged, and how the log calls it.
  struct Claim {
    LoginAttempt attempt;
    std::string key;  ///< of what is shown for it
    std::string name;
    std::string client;

    /// Whose failures count. Nobody guesses a certificate: who shows one is not held up by guesses at the
    /// user's password.
    const std::string& counted() const { return attempt.password ? attempt.user : key; }
  };

  std::string digestOf(const std::string& text) const;
  std::chrono::seconds pauseOf(const std::string& user, const std::string& client, Clock::time_point now);
  Login check(const Claim& claim);
  Login judge(const Claim& claim, bool knownBefore);
  Login letIn(Known& known, const Claim& claim) const;
  void remember(const std::string& digest, const User& user);
  void refuse(const std::string& what, const std::string& host, const std::string& client);
  void noteFailure(const Claim& claim);

  const LogLine _log;
  FailureLog _refusals;
  LoginLine _line;
  std::string _salt;
  std::mutex _mutex;
  std::condition_variable _judged;
  std::map<std::string, Known> _known;  // by salted digest of the header
  std::set<std::string> _underWay;      // likewise
  LoginBackOff _users, _clients;
};

}  // namespace ZebManager
