#include "server/Authenticator.h"

#include <gnutls/crypto.h>
#include <gnutls/gnutls.h>

#include <algorithm>

#include "schema/Caseless.h"
#include "values/ManagerError.h"

namespace ZebManager {
namespace {

using std::chrono::seconds;

constexpr seconds kHolds{30};
/// Since somebody with these credentials was let in.
constexpr seconds kRemembered{3600};
constexpr seconds kWhenFull{5};
constexpr std::size_t kMostKnown = 1000;
constexpr std::size_t kMostHosts = 64;
constexpr std::size_t kDigestBytes = 32;
/// More than Linux and PAM take.
constexpr std::size_t kLongestUser = 256;
constexpr std::size_t kLongestPassword = 511;
constexpr unsigned kFreeOfUser = 3;
constexpr unsigned kFreeOfClient = 10;

std::optional<std::string> decodeBase64(std::string_view text) {
  const gnutls_datum_t coded{const_cast<unsigned char*>(reinterpret_cast<const unsigned char*>(text.data())),
                             static_cast<unsigned>(text.size())};
  gnutls_datum_t plain{};
  if (gnutls_base64_decode2(&coded, &plain) != 0) return std::nullopt;
  std::string out(reinterpret_cast<const char*>(plain.data), plain.size);
  gnutls_free(plain.data);
  return out;
}

bool isControl(unsigned char c) {
  return c < ' ' || c == 0x7f;
}

std::optional<LoginAttempt> attemptOf(std::string_view authorization, const std::string& host) {
  constexpr std::string_view kBasic = "basic ";
  if (!sameName(authorization.substr(0, kBasic.size()), kBasic)) return std::nullopt;
  const auto plain = decodeBase64(authorization.substr(kBasic.size()));
  if (!plain || plain->find('\0') != std::string::npos) return std::nullopt;
  const std::size_t colon = plain->find(':');
  if (colon == std::string::npos || colon == 0 || colon > kLongestUser) return std::nullopt;
  if (plain->size() - colon - 1 > kLongestPassword) return std::nullopt;
  // No user is called so, and modules of PAM write names into logs.
  if (std::any_of(plain->begin(), plain->begin() + static_cast<std::ptrdiff_t>(colon), isControl))
    return std::nullopt;
  return LoginAttempt{plain->substr(0, colon), plain->substr(colon + 1), host};
}

/// No header holds a line end, and no user who guesses has one in the name.
std::string keyOf(const ShownCertificate& certificate) {
  return "\ncertificate of " + certificate.user;
}

}  // namespace

Authenticator::Authenticator(ProcessSource judges, LogLine log)
    : _log(std::move(log)),
      _refusals(_log),
      _line(std::move(judges)),
      _salt(kDigestBytes, '\0'),
      _users(kFreeOfUser),
      _clients(kFreeOfClient) {
  gnutls_rnd(GNUTLS_RND_RANDOM, _salt.data(), _salt.size());
}

std::string Authenticator::digestOf(const std::string& text) const {
  const std::string salted = _salt + text;
  std::string digest(kDigestBytes, '\0');
  gnutls_hash_fast(GNUTLS_DIG_SHA256, salted.data(), salted.size(), digest.data());
  return digest;
}

std::optional<std::string> Authenticator::knownBefore(const std::string& authorization) {
  const std::string digest = digestOf(authorization);
  const std::lock_guard lock(_mutex);
  const auto found = _known.find(digest);
  if (found == _known.end() || Clock::now() - found->second.asked >= kRemembered) return std::nullopt;
  return found->second.user.name;
}

std::optional<std::string> Authenticator::knownBefore(const ShownCertificate& certificate) {
  return knownBefore(keyOf(certificate));
}

Login Authenticator::check(const std::string& authorization, const std::string& host,
                           const std::string& client) {
  auto attempt = attemptOf(authorization, host);
  if (attempt) {
    const std::string name = quotedForLog(attempt->user) + " with a password";
    return check(Claim{std::move(*attempt), authorization, name, client});
  }
  refuse("a login that cannot be read", host, client);
  return {};
}

Login Authenticator::check(const ShownCertificate& certificate, const std::string& host,
                           const std::string& client) {
  const std::string name = "the certificate " + quotedForLog(certificate.subject);
  if (!certificate.user.empty()) {
    return check(Claim{{certificate.user, std::nullopt, host},
                       keyOf(certificate),
                       quotedForLog(certificate.user) + " with " + name,
                       client});
  }
  refuse(name + " (" + certificate.fault + ")", host, client);
  return {};
}

/// What is shown is judged once at a time, whoever shows it.
Login Authenticator::check(const Claim& claim) {
  const std::string digest = digestOf(claim.key);
  std::unique_lock lock(_mutex);
  _judged.wait(lock, [&] { return !_underWay.contains(digest); });
  const auto now = Clock::now();
  const auto found = _known.find(digest);
  const bool knownBefore = found != _known.end() && now - found->second.asked < kRemembered;
  if (knownBefore && now - found->second.asked < kHolds) return letIn(found->second, claim);
  if (!knownBefore) {
    if (const seconds pause = pauseOf(claim.counted(), claim.client, now); pause > seconds(0))
      return {{}, pause};
  }
  _underWay.insert(digest);
  lock.unlock();
  const Login login = judge(claim, knownBefore);
  lock.lock();
  _underWay.erase(digest);
  _judged.notify_all();
  if (login.user) {
    remember(digest, *login.user);
    _users.succeeded(claim.counted());
    return letIn(_known[digest], claim);
  }
  if (login.later == seconds(0)) {
    _known.erase(digest);
    noteFailure(claim);
  }
  return login;
}

seconds Authenticator::pauseOf(const std::string& user, const std::string& client, Clock::time_point now) {
  return std::max(_users.pauseOf(user, now), _clients.pauseOf(client, now));
}

Login Authenticator::judge(const Claim& claim, bool knownBefore) {
  const LoginAttempt& attempt = claim.attempt;
  try {
    const auto verdict = _line.judge(attempt, claim.client, knownBefore);
    if (!verdict) return {{}, kWhenFull};
    if (*verdict == Verdict::Refused) return {};
    return {User{attempt.user, *verdict == Verdict::MayWrite}};
  } catch (const std::exception& error) {
    _log(std::string("a login cannot be judged: ") + error.what());
    return {{}, kWhenFull};
  }
}

/// A line for each address from which somebody signs in.
Login Authenticator::letIn(Known& known, const Claim& claim) const {
  const std::string& host = claim.attempt.host;
  if (known.hosts.size() >= kMostHosts && !known.hosts.contains(host)) known.hosts.clear();
  if (known.hosts.insert(host).second) _log("signed in from " + host + ": " + claim.name);
  return {known.user};
}

void Authenticator::remember(const std::string& digest, const User& user) {
  if (_known.size() >= kMostKnown) {
    _known.erase(std::min_element(_known.begin(), _known.end(), [](const auto& a, const auto& b) {
      return a.second.asked < b.second.asked;
    }));
  }
  Known& known = _known[digest];
  known.user = user;
  known.asked = Clock::now();
}

void Authenticator::refuse(const std::string& what, const std::string& host, const std::string& client) {
  const std::lock_guard lock(_mutex);
  _refusals.add("refused from " + host + ": " + what, client, Clock::now());
}

void Authenticator::noteFailure(const Claim& claim) {
  const auto now = Clock::now();
  _refusals.add("refused from " + claim.attempt.host + ": " + claim.name, claim.client, now);
  if (_users.failed(claim.counted(), now))
    _log("logins of " + quotedForLog(claim.attempt.user) + " keep failing: further ones have to wait");
  if (_clients.failed(claim.client, now))
    _log("logins from " + claim.client + " keep failing: further ones have to wait");
}

}  // namespace ZebManager
