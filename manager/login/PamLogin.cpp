#include "login/PamLogin.h"

#include <security/pam_appl.h>
#include <shadow.h>

#include <cstdlib>
#include <cstring>
#include <string_view>

#include "login/WriteGroup.h"

namespace ZebManager {
namespace {

/// PAM frees what it gets here.
int converse(int count, const pam_message** messages, pam_response** responses, void* password) {
  if (!password) return PAM_CONV_ERR;
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

/// Who guesses is slowed down by the server, without a process that sleeps.
void doNotSleep(int, unsigned, void*) {}

/// Whether somebody has locked the password of an account, which the modules that judge accounts do not look
/// at. One that has never had a password is not locked.
bool isLocked(const std::string& user) {
  const spwd* const entry = getspnam(user.c_str());
  const std::string_view password = entry && entry->sp_pwdp ? entry->sp_pwdp : "";
  const std::size_t hash = password.find_first_not_of('!');
  return hash != 0 && hash != std::string_view::npos && password[hash] != '*';
}

int authenticate(pam_handle_t* handle, const LoginAttempt& attempt) {
  constexpr int kFlags = PAM_SILENT | PAM_DISALLOW_NULL_AUTHTOK;
  pam_set_item(handle, PAM_FAIL_DELAY, reinterpret_cast<const void*>(&doNotSleep));
  pam_set_item(handle, PAM_RHOST, attempt.host.c_str());
  const int result = attempt.password         ? pam_authenticate(handle, kFlags)
                     : isLocked(attempt.user) ? PAM_AUTH_ERR
                                              : PAM_SUCCESS;
  return result == PAM_SUCCESS ? pam_acct_mgmt(handle, kFlags) : result;
}

}  // namespace

Verdict askPam(const LoginSettings& settings, const LoginAttempt& attempt) {
  const std::string* const password = attempt.password ? &*attempt.password : nullptr;
  const pam_conv conversation{converse, const_cast<std::string*>(password)};
  pam_handle_t* handle = nullptr;
  const char* const folder = settings.pamFolder.empty() ? nullptr : settings.pamFolder.c_str();
  const int started =
      pam_start_confdir(settings.pamService.c_str(), attempt.user.c_str(), &conversation, folder, &handle);
  if (started != PAM_SUCCESS) return Verdict::Refused;
  const int result = authenticate(handle, attempt);
  Verdict verdict = Verdict::Refused;
  if (result == PAM_SUCCESS) {
    verdict = isMember(attempt.user, settings.writeGroup) ? Verdict::MayWrite : Verdict::MayRead;
  }
  pam_end(handle, result);
  return verdict;
}

}  // namespace ZebManager
