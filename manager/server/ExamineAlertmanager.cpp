#include "server/ExamineAlertmanager.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "alertmanager/AlertmanagerCheck.h"
#include "alertmanager/Credentials.h"
#include "values/FileText.h"
#include "values/ManagerError.h"

namespace ZebManager {
namespace {

using Say = std::function<void(const char*, const std::string&)>;

/// False for what cannot be used; then that has been said.
bool isReadable(const std::string& what, const std::string& file, const Say& say) {
  struct stat state {};
  if (stat(file.c_str(), &state) == 0 && !S_ISREG(state.st_mode)) {
    say("failed", what + " " + file + " is no file");
    return false;
  }
  if (access(file.c_str(), R_OK) == 0) return true;
  const bool hidden = errno == EACCES && geteuid() != 0;
  say(hidden ? "note" : "failed",
      what + " " + file + " cannot be read: " + std::strerror(errno) + (hidden ? "; root can" : ""));
  return false;
}

bool lookAtCertificates(const std::string& file, const Say& say) {
  if (file.empty()) return true;
  if (!isReadable("alertmanager.trusted-certificates", file, say)) return false;
  if (textOfFile(file).find("-----BEGIN ") != std::string::npos) return true;
  say("failed", "alertmanager.trusted-certificates " + file + " holds no certificate");
  return false;
}

bool lookAtCredentials(const std::string& file, const Say& say) {
  if (file.empty()) return true;
  if (!isReadable("alertmanager.credentials", file, say)) return false;
  struct stat state {};
  if (stat(file.c_str(), &state) == 0 && (state.st_mode & S_IROTH) != 0) {
    say("failed", "alertmanager.credentials " + file +
                      " can be read by everybody; chown root:_zebcim and chmod 640 let the service alone");
  }
  try {
    authorizationIn(file);
    return true;
  } catch (const ManagerError& error) {
    say("failed", error.what());
    return false;
  }
}

}  // namespace

void examineAlertmanager(const AlertmanagerSettings& settings, const Say& say) {
  if (settings.urls.empty()) return say("note", "none is told of alerts: alertmanager.urls names none");
  const bool certificates = lookAtCertificates(settings.trustedCertificates, say);
  const bool credentials = lookAtCredentials(settings.credentials, say);
  const bool plain =
      std::ranges::any_of(settings.urls, [](const std::string& url) { return url.starts_with("http:"); });
  if (plain && !settings.credentials.empty())
    say("note", "credentials cross the network readable: not every URL is one of https");
  if (!certificates || !credentials) return;
  for (const std::string& url : settings.urls) {
    const std::string trouble = troubleWithAlertmanager(settings, url);
    trouble.empty() ? say("ok", url + " takes alerts") : say("failed", url + ": " + trouble);
  }
}

}  // namespace ZebManager
