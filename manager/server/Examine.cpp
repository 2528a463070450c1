#include "server/Examine.h"

#include <gnutls/gnutls.h>
#include <gnutls/x509.h>
#include <grp.h>
#include <sqlite3.h>
#include <unistd.h>

#include <ctime>
#include <filesystem>
#include <fstream>
#include <memory>
#include <ostream>
#include <sstream>

#include "local/RunFolder.h"
#include "local/ServiceLink.h"
#include "login/ConfigurationFile.h"
#include "server/ExamineAlertmanager.h"
#include "server/ListeningSocket.h"
#include "server/ServerSettings.h"
#include "values/ManagerError.h"

namespace ZebManager {
namespace {

namespace fs = std::filesystem;

class Examination {
 public:
  explicit Examination(std::ostream& out) : _out(out) {}

  void look(const std::string& file, bool mayLack) {
    // Where no server is set up, nothing of it is missing.
    _missing = fs::exists(file) ? "failed" : "note";
    bool right = true;
    const ServerSettings settings = readServerSettings(file, mayLack, [&](const std::string& line) {
      say("failed", "server", line);
      right = false;
    });
    if (right) say("ok", "server", fs::exists(file) ? file : "defaults, without " + file);
    lookAtPlace("http", settings.http);
    lookAtPlace("https", settings.https);
    if (!isNowhere(settings.https)) lookAtCertificate(settings);
    lookAtGroup(settings.login.writeGroup);
    lookAtPam(settings.login);
    lookAtWaiting(settings.stateDirectory);
    examineAlertmanager(settings.alertmanager, [this](const char* state, const std::string& text) {
      say(state, "alertmanager", text);
    });
  }

  void say(const char* state, const char* what, const std::string& text) {
    _out << state << '\t' << what << '\t' << oneLine(text) << '\n';
  }

 private:
  void lookAtPlace(const char* what, const std::string& place) {
    if (isNowhere(place)) return say("note", what, "is not served");
    try {
      bindAt(place);
      say("note", what, "nobody listens at " + place);
    } catch (const ManagerError& error) {
      const int number = errno;
      if (number == EADDRINUSE && serviceRuns()) return say("ok", what, "somebody listens at " + place);
      if (number == EADDRINUSE) {
        return say("failed", what,
                   "somebody else listens at " + place + ", and no service runs here; listen." + what +
                       " names another place");
      }
      if (number == EACCES && geteuid() != 0)
        return say("note", what, "whether " + place + " can be listened at is for root to see");
      say("failed", what, std::string(error.what()) + "; listen." + what + " names another place");
    }
  }

  static bool serviceRuns() {
    try {
      return ServiceLink::find(configuredRunFolder()) != nullptr;
    } catch (const ManagerError&) {
      return true;  // it is there and cannot be asked
    }
  }

  void lookAtCertificate(const ServerSettings& settings) {
    const bool own = settings.certificate.empty();
    const std::string file = own ? settings.stateDirectory + "/server.pem" : settings.certificate;
    std::ifstream in(file);
    if (!in) {
      if (own && errno == ENOENT)
        return say("note", "https", "the server makes a certificate when it starts");
      const bool hidden = errno == EACCES && geteuid() != 0;
      return say(hidden ? "note" : "failed", "https",
                 "the certificate " + file + " cannot be read" + (hidden ? "; root can" : ""));
    }
    std::ostringstream text;
    text << in.rdbuf();
    const std::string pem = text.str();
    if (!own && !settings.key.empty() && !std::ifstream(settings.key) && geteuid() == 0)
      say("failed", "https", "the key " + settings.key + " cannot be read");
    gnutls_x509_crt_t certificate = nullptr;
    gnutls_x509_crt_init(&certificate);
    const gnutls_datum_t data{reinterpret_cast<unsigned char*>(const_cast<char*>(pem.data())),
                              static_cast<unsigned>(pem.size())};
    const bool readable = gnutls_x509_crt_import(certificate, &data, GNUTLS_X509_FMT_PEM) == 0;
    const std::time_t end = readable ? gnutls_x509_crt_get_expiration_time(certificate) : 0;
    gnutls_x509_crt_deinit(certificate);
    if (!readable) return say("failed", "https", file + " holds no certificate");
    sayExpiry(file, end);
  }

  void sayExpiry(const std::string& file, std::time_t end) {
    constexpr std::time_t kDay = 24 * 3600, kSoon = 30;
    const std::time_t days = (end - std::time(nullptr)) / kDay;
    if (end < std::time(nullptr)) {
      say("failed", "https", "the certificate " + file + " has expired; put another one in its place");
    } else {
      say(days < kSoon ? "failed" : "ok", "https",
          "the certificate " + file + " holds for " + std::to_string(days) + " days" +
              (days < kSoon ? "; renew it" : ""));
    }
  }

  void lookAtGroup(const std::string& name) {
    if (name.empty()) return say("note", "writers", "root alone: no group is named");
    const group* const found = getgrnam(name.c_str());
    if (!found) {
      return say(
          _missing, "writers",
          "there is no group '" + name + "': root alone may write; groupadd --system " + name + " makes it");
    }
    std::string members;
    for (char** member = found->gr_mem; *member; ++member)
      members += (members.empty() ? "" : ", ") + std::string(*member);
    say("ok", "writers",
        "root and the group '" + name +
            "': " + (members.empty() ? "nobody yet; adduser USER " + name : members));
  }

  void lookAtPam(const LoginSettings& login) {
    const std::string folder = login.pamFolder.empty() ? "/etc/pam.d" : login.pamFolder;
    const std::string file = folder + "/" + login.pamService;
    if (fs::exists(file)) return say("ok", "logins", file);
    say(_missing, "logins",
        "there is no PAM service " + file + ": nobody can log in; access.pam-service names one");
  }

  void lookAtWaiting(const std::string& folder) {
    const std::string file = folder + "/delivery.db";
    if (access(file.c_str(), R_OK) != 0) {
      const bool hidden = access(folder.c_str(), X_OK) != 0 && errno == EACCES;
      return say("note", "waiting",
                 hidden ? "indications in " + folder + " are for root to see" : "no indication");
    }
    const auto count = waiting(file);
    if (!count) return say("failed", "waiting", file + " cannot be read");
    say("ok", "waiting", std::to_string(*count) + " indications for listeners");
  }

  static std::optional<std::int64_t> waiting(const std::string& file) {
    sqlite3* opened = nullptr;
    // Who reads beside somebody needs what tells readers of each other, and would make it when it is missing.
    const bool beside = fs::exists(file + "-shm");
    const std::string name = "file:" + file + (beside ? "?mode=ro&readonly_shm=1" : "?immutable=1");
    const int result =
        sqlite3_open_v2(name.c_str(), &opened, SQLITE_OPEN_READONLY | SQLITE_OPEN_URI, nullptr);
    const std::unique_ptr<sqlite3, decltype(&sqlite3_close)> database(opened, sqlite3_close);
    sqlite3_stmt* prepared = nullptr;
    if (result != SQLITE_OK ||
        sqlite3_prepare_v2(opened, "SELECT count(*) FROM indication", -1, &prepared, nullptr) != SQLITE_OK) {
      return std::nullopt;
    }
    const std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)> statement(prepared, sqlite3_finalize);
    if (sqlite3_step(prepared) != SQLITE_ROW) return std::nullopt;
    return sqlite3_column_int64(prepared, 0);
  }

  std::ostream& _out;
  const char* _missing = "failed";
};

}  // namespace

void examine(const Options& options, std::ostream& out) {
  Examination examination(out);
  try {
    examination.look(options.config.empty() ? kServerSettingsFile : options.config, options.config.empty());
  } catch (const ManagerError& error) {
    examination.say("failed", "server", std::string(error.what()) + "; the server does not start with it");
  }
}

}  // namespace ZebManager
