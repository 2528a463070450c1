#include "server/Authenticator.h"

#include <gnutls/crypto.h>
#include <gnutls/gnutls.h>
#include <grp.h>
#include <pwd.h>
#include <security/pam_appl.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "schema/Caseless.h"

namespace ZebManager {
namespace {

constexpr std::chrono::seconds kHolds{30};
constexpr std::size_t kMostKnown = 1000;
constexpr std::size_t kDigestBytes = 32;

std::optional<std::string> decodeBase64(std::string_view text) {
  const gnutls_datum_t coded{const_cast<unsigned char*>(reinterpret_cast<const unsigned char*>(text.data())),
                             static_cast<unsigned>(text.size())};
  gnutls_datum_t plain{};
  if (gnutls_base64_decode2(&coded, &plain) != 0) return std::nullopt;
  std::string out(reinterpret_cast<const char*>(plain.data), plain.size);
  gnutls_free(plain.data);
  return out;
}

struct Credentials {
  std::string user, password;
};

std::optional<Credentials> credentialsOf(std::string_view authorization) {
  constexpr std::string_view kBasic = "basic ";
  if (!sameName(authorization.substr(0, kBasic.size()), kBasic)) return std::nullopt;
  const auto plain = decodeBase64(authorization.substr(kBasic.size()));
  if (!plain || plain->find('\0') != std::string::npos) return std::nullopt;
  const std::size_t colon = plain->find(':');
  if (colon == std::string::npos || colon == 0) return std::nullopt;
  return Credentials{plain->substr(0, colon), plain->substr(colon + 1)};
}

/// PAM frees what it gets here.
int converse(int count, const pam_message** messages, pam_response** responses, void* password) {
  auto* const answers =
      static_cast<pam_response*>(std::calloc(static_cast<std::size_t>(count), sizeof **responses));
  if (!answers) return PAM_BUF_ERR;
  for (int i = 0; i < count; ++i) {
    if (messages[i]->msg_style != PAM_PROMPT_ECHO_OFF) continue;
    answers[i].resp = strdup(static_cast<const std::string*>(password)->c_str());
  }
  *responses = answers;
  return PAM_SUCCESS;
}

bool isMember(const std::string& user, const std::string& groupName) {
  std::vector<char> buffer(std::size_t{1} << 16);
  group groupEntry{};
  group* wanted = nullptr;
  getgrnam_r(groupName.c_str(), &groupEntry, buffer.data(), buffer.size(), &wanted);
  if (!wanted) return false;
  const gid_t id = wanted->gr_gid;
  passwd userEntry{};
  passwd* found = nullptr;
  getpwnam_r(user.c_str(), &userEntry, buffer.data(), buffer.size(), &found);
  if (!found) return false;
  std::array<gid_t, 1024> groups{};
  int count = static_cast<int>(groups.size());
  if (getgrouplist(user.c_str(), found->pw_gid, groups.data(), &count) < 0) return false;
  for (int i = 0; i < count; ++i) {
    if (groups.at(static_cast<std::size_t>(i)) == id) return true;
  }
  return false;
}

}  // namespace

Authenticator::Authenticator(const ServerSettings& settings)
    : _settings(settings), _salt(kDigestBytes, '\0') {
  gnutls_rnd(GNUTLS_RND_RANDOM, _salt.data(), _salt.size());
}

std::string Authenticator::digestOf(const std::string& text) const {
  const std::string salted = _salt + text;
  std::string digest(kDigestBytes, '\0');
  gnutls_hash_fast(GNUTLS_DIG_SHA256, salted.data(), salted.size(), digest.data());
  return digest;
}

bool Authenticator::acceptedByPam(const std::string& user, const std::string& password) const {
  const pam_conv conversation{converse, const_cast<std::string*>(&password)};
  pam_handle_t* handle = nullptr;
  const char* const folder = _settings.pamFolder.empty() ? nullptr : _settings.pamFolder.c_str();
  int result = pam_start_confdir(_settings.pamService.c_str(), user.c_str(), &conversation, folder, &handle);
  if (result != PAM_SUCCESS) return false;
  constexpr int kFlags = PAM_SILENT | PAM_DISALLOW_NULL_AUTHTOK;
  result = pam_authenticate(handle, kFlags);
  if (result == PAM_SUCCESS) result = pam_acct_mgmt(handle, kFlags);
  pam_end(handle, result);
  return result == PAM_SUCCESS;
}

std::optional<Authenticator::User> Authenticator::check(const std::string& authorization) {
  const std::string digest = digestOf(authorization);
  const auto now = std::chrono::steady_clock::now();
  {
    const std::lock_guard lock(_mutex);
    const auto known = _known.find(digest);
    if (known != _known.end() && known->second.until > now) return known->second.user;
  }
  const auto given = credentialsOf(authorization);
  if (!given || !acceptedByPam(given->user, given->password)) return std::nullopt;
  User user{given->user, isMember(given->user, _settings.writeGroup)};
  const std::lock_guard lock(_mutex);
  if (_known.size() >= kMostKnown) _known.clear();
  _known[digest] = {user, now + kHolds};
  return user;
}

}  // namespace ZebManager
