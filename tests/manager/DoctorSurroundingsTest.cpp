// What doctor says of the files that people write, of the server, and of other object managers.
#include <arpa/inet.h>
#include <gnutls/gnutls.h>
#include <gnutls/x509.h>
#include <sqlite3.h>
#include <sys/socket.h>

#include "DoctorCommand.h"
#include "posix/FileDescriptor.h"
#include "support/TestListener.h"

namespace ZebManager {
namespace {

using testing::HasSubstr;
using testing::Not;

/// A socket that listens at a port of the loopback interface.
struct Taken {
  ZEB::FileDescriptor socket{::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)};
  std::string place;

  Taken() {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    EXPECT_EQ(bind(socket.get(), generic, sizeof address), 0);
    EXPECT_EQ(listen(socket.get(), 1), 0);
    EXPECT_EQ(getsockname(socket.get(), generic, &length), 0);
    place = "127.0.0.1:" + std::to_string(ntohs(address.sin_port));
  }
};

/// A certificate and its key that hold until some days from now, which may be past.
std::string pemOf(int days) {
  constexpr std::time_t kDay = 24 * 3600;
  gnutls_x509_privkey_t key = nullptr;
  gnutls_x509_crt_t certificate = nullptr;
  gnutls_x509_privkey_init(&key);
  gnutls_x509_privkey_generate(key, GNUTLS_PK_ECDSA, GNUTLS_CURVE_TO_BITS(GNUTLS_ECC_CURVE_SECP256R1), 0);
  gnutls_x509_crt_init(&certificate);
  gnutls_x509_crt_set_version(certificate, 3);
  gnutls_x509_crt_set_serial(certificate, "1", 1);
  gnutls_x509_crt_set_activation_time(certificate, std::time(nullptr) - 100 * kDay);
  gnutls_x509_crt_set_expiration_time(certificate, std::time(nullptr) + days * kDay + kDay / 2);
  gnutls_x509_crt_set_key(certificate, key);
  gnutls_x509_crt_sign2(certificate, certificate, key, GNUTLS_DIG_SHA256, 0);
  gnutls_datum_t text{};
  EXPECT_EQ(gnutls_x509_crt_export2(certificate, GNUTLS_X509_FMT_PEM, &text), 0);
  const std::string pem(reinterpret_cast<char*>(text.data), text.size);
  gnutls_free(text.data);
  gnutls_x509_crt_deinit(certificate);
  gnutls_x509_privkey_deinit(key);
  return pem;
}

class DoctorOfServer : public DoctorCommand {
 protected:
  /// With the text as the server's configuration; of what it does not say nothing is there.
  Outcome doctorOf(const std::string& text) const {
    const std::string file = (folder / "zebcim.toml").string();
    std::ofstream(file) << text << "[state]\ndirectory = \"" << (folder / "state").string() << "\"\n";
    return zebcim({"doctor", "--source", snapshotFile("teams"), "--config", file});
  }
};

TEST_F(DoctorOfServer, SaysWhenAPortIsSomebodyElses) {
  const Taken taken;
  const Outcome outcome = doctorOf("[listen]\nhttp = \"" + taken.place + "\"\nhttps = \"none\"\n");
  expectTrouble(outcome, "http       FAILED  somebody else listens at " + taken.place +
                             ", and no service runs here; listen.http names another place\n");
  EXPECT_THAT(outcome.out, HasSubstr("https      -       is not served\n"));
}

TEST_F(DoctorOfServer, SaysHowLongACertificateHolds) {
  const std::string pem = (folder / "server.pem").string();
  const auto outcomeFor = [&](int days) {
    std::ofstream(pem) << pemOf(days);
    return doctorOf("[listen]\nhttp = \"none\"\nhttps = \"127.0.0.1:0\"\ncertificate = \"" + pem + "\"\n");
  };
  EXPECT_THAT(outcomeFor(300).out,
              HasSubstr("https      ok      the certificate " + pem + " holds for 300 days\n"));
  expectTrouble(outcomeFor(29),
                "https      FAILED  the certificate " + pem + " holds for 29 days; renew it\n");
  EXPECT_THAT(outcomeFor(30).out,
              HasSubstr("https      ok      the certificate " + pem + " holds for 30 days\n"));
  expectTrouble(outcomeFor(-1),
                "https      FAILED  the certificate " + pem + " has expired; put another one in its place\n");
  std::ofstream(pem) << "no certificate";
  expectTrouble(
      doctorOf("[listen]\nhttp = \"none\"\nhttps = \"127.0.0.1:0\"\ncertificate = \"" + pem + "\"\n"),
      "https      FAILED  " + pem + " holds no certificate\n");
}

TEST_F(DoctorOfServer, CountsTheIndicationsThatWait) {
  const std::string nothing = "[listen]\nhttp = \"none\"\nhttps = \"none\"\n";
  EXPECT_THAT(doctorOf(nothing).out, HasSubstr("waiting    -       no indication\n"));
  std::filesystem::create_directory(folder / "state");
  sqlite3* database = nullptr;
  ASSERT_EQ(sqlite3_open((folder / "state/delivery.db").c_str(), &database), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(database,
                         "PRAGMA journal_mode = WAL; CREATE TABLE indication (sequence INTEGER PRIMARY KEY); "
                         "INSERT INTO indication VALUES (1), "
                         "(2), (3)",
                         nullptr, nullptr, nullptr),
            SQLITE_OK);
  sqlite3_close(database);
  const auto before = traces("state");
  EXPECT_THAT(doctorOf(nothing).out, HasSubstr("waiting    ok      3 indications for listeners\n"));
  EXPECT_EQ(traces("state"), before);
  std::ofstream(folder / "state/delivery.db")
      << "this is no database, however long it may be, and so it is said";
  expectTrouble(doctorOf(nothing),
                "waiting    FAILED  " + (folder / "state/delivery.db").string() + " cannot be read");
}

TEST_F(DoctorOfServer, LooksAtTheSettingsOfAlertmanager) {
  const std::string nothing = "[listen]\nhttp = \"none\"\nhttps = \"none\"\n";
  const std::string who = (folder / "who").string(), trusted = (folder / "ca.pem").string();
  std::string url, more;
  const auto said = [&] { return doctorOf(nothing + "[alertmanager]\nurls = [\"" + url + "\"]\n" + more); };
  EXPECT_THAT(doctorOf(nothing).out, HasSubstr("alertmanager  -       none is told of alerts"));
  url = "ftp://alerts.example";
  expectTrouble(said(), "'alertmanager.urls' has a bad value: expected a list of http or https URLs");
  TestListener listener([](std::size_t, const auto&) { return TestListener::response("200 OK", ""); });
  url = "http://127.0.0.1:9";
  expectTrouble(said(), "alertmanager  FAILED  http://127.0.0.1:9: ");
  url = listener.url();
  EXPECT_THAT(said().out, HasSubstr("alertmanager  ok      " + url + " takes alerts\n"));
  ASSERT_EQ(listener.requests().size(), 1U);
  EXPECT_EQ(listener.requests()[0].body, "[]") << "no alert";
  more = "credentials = \"" + who + "\"\n";
  expectTrouble(said(),
                "alertmanager  FAILED  alertmanager.credentials " + who + " cannot be read: No such file");
  std::ofstream(who) << "zeb:secret\n";
  std::filesystem::permissions(who, std::filesystem::perms(0644));
  expectTrouble(said(),
                "alertmanager  FAILED  alertmanager.credentials " + who + " can be read by everybody; ");
  std::filesystem::permissions(who, std::filesystem::perms(0640));
  expectTrouble(said(), "alertmanager  FAILED  'alertmanager.credentials' " + who + " has to hold one line");
  EXPECT_EQ(listener.requests().size(), 1U) << "without credentials that can be used nobody is asked";
  std::ofstream(who) << "Bearer abc\n";
  EXPECT_THAT(said().out,
              testing::AllOf(HasSubstr("alertmanager  -       credentials cross the network readable"),
                             HasSubstr("alertmanager  ok      " + url)));
  more = "trusted-certificates = \"" + trusted + "\"\n";
  expectTrouble(said(),
                "alertmanager  FAILED  alertmanager.trusted-certificates " + trusted + " cannot be read");
  std::ofstream(trusted) << "no certificate";
  expectTrouble(said(), "alertmanager  FAILED  alertmanager.trusted-certificates " + trusted +
                            " holds no certificate\n");
}

/// In a mount namespace where those programs and files are, whatever this machine has.
TEST_F(DoctorCommand, KnowsWhereElseThePlugInIsRegistered) {
  if (geteuid() != 0) GTEST_SKIP() << "needs to be root to mount something";
  for (const char* made : {"sbin", "sfcb/registration", "zeb/OpenPegasus"})
    std::filesystem::create_directories(folder / made);
  std::ofstream(folder / "sbin/sfcbd") << "";
  const auto said = [&] {
    const std::string script =
        "set -e; mount -t overlay -o lowerdir=" + (folder / "sbin").string() +
        ":/usr/sbin overlay /usr/sbin; mount -t overlay -o lowerdir=" + folder.path().string() +
        ":/var/lib overlay /var/lib; exec \"$@\"";
    return run("/usr/bin/unshare",
               {"--mount", "sh", "-c", script, "sh", ZEB_CIM, "doctor", "--source", snapshotFile("teams"),
                "--plugin", ZEB_REAL_PLUGIN, "--schema", ZEB_SCHEMA_FILE},
               environment());
  };
  const Outcome unknown = said();
  if (unknown.status > 1) GTEST_SKIP() << "nothing can be mounted here: " << unknown.err;
  EXPECT_THAT(unknown.out, HasSubstr("known to   -       sfcb: not registered; zeb-register does it\n"));
  EXPECT_THAT(unknown.out, Not(HasSubstr("OpenPegasus")));
  std::ofstream(folder / "sfcb/registration/providerRegister")
      << "[ZEB_EthernetPort]\n   provider: ZEBEthernetPort\n";
  std::ofstream(folder / "sbin/cimserver") << "";
  const Outcome known = said();
  EXPECT_THAT(known.out, HasSubstr("known to   -       sfcb: registered\n"));
  EXPECT_THAT(known.out, HasSubstr("known to   -       OpenPegasus: not registered; zeb-register does it\n"));
}

/// What the server's own reader says, and what its file names.
TEST_F(DoctorCommand, LooksAtTheConfigurationOfTheServer) {
  const std::string file = (folder / "zebcim.toml").string();
  const auto doctorOf = [&](const std::string& text) {
    std::ofstream(file) << text;
    return zebcim({"doctor", "--source", snapshotFile("teams"), "--config", file});
  };
  expectTrouble(doctorOf("[listen\n"), "server     FAILED  " + file + ":1: ");
  expectTrouble(doctorOf("[listen]\nhtpp = \"none\"\n"),
                "'listen.htpp' is unknown; the server does not start with it\n");
  expectTrouble(doctorOf("[limits]\nconnections = -1\n"),
                "server     FAILED  " + file + ":2: 'limits.connections' has a bad value");
  expectTrouble(doctorOf("[access]\nwrite-group = \"no-such-group\"\n"),
                "writers    FAILED  there is no group 'no-such-group': root alone may write; groupadd");
  expectTrouble(doctorOf("[access]\npam-folder = \"" + folder.path().string() + "\"\n"),
                "logins     FAILED  there is no PAM service " + (folder / "zebcim").string());
  expectTrouble(doctorOf("[listen]\ncertificate = \"/nope.pem\"\n"),
                "https      FAILED  the certificate /nope.pem cannot be read");
  std::ofstream(folder / "zebcim") << "auth required pam_deny.so\n";
  const Outcome well = doctorOf(
      "[listen]\nhttp = \"none\"\nhttps = \"none\"\n[access]\nwrite-group = \"root\"\npam-folder = \"" +
      folder.path().string() + "\"\n[state]\ndirectory = \"" + (folder / "state").string() + "\"\n");
  EXPECT_EQ(well.status, 0) << well.out;
  EXPECT_THAT(well.out, HasSubstr("server     ok      " + file + "\n"));
  EXPECT_THAT(well.out, HasSubstr("writers    ok      root and the group 'root': "));
  EXPECT_FALSE(std::filesystem::exists(folder / "state")) << "a look makes nothing";
}

TEST_F(DoctorCommand, LooksAtTheConfigurationOfThePlugIn) {
  const std::string file = (folder / "qv-zeb.toml").string();
  std::ofstream(file) << "include-vrtual = true\nperfmon = 3\n";
  const Outcome outcome = zebcim({"doctor", "--source", snapshotFile("teams")}, {"ZEB_CONFIG=" + file});
  expectTrouble(outcome, "settings   FAILED  " + file + ":1: unknown key include-vrtual\n");
  expectTrouble(outcome, "settings   FAILED  " + file + ":2: perfmon has to be true or false\n");
  std::ofstream(file) << "run-directory = \"relative\"\n";
  expectTrouble(run(ZEB_CIM, {"doctor", "--source", snapshotFile("teams")}, {"ZEB_CONFIG=" + file}),
                "settings   FAILED  " + file + ":1: run-directory has to be a directory, from / on");
  std::filesystem::remove(file);
  expectTrouble(zebcim({"doctor", "--source", snapshotFile("teams")}, {"ZEB_CONFIG=" + file}),
                "settings   FAILED  ZEB_CONFIG names " + file + ", which is not there: defaults hold\n");
}

/// A user who is nobody in particular is told what only root sees, and nothing fails for it.
TEST_F(DoctorCommand, SaysToAnOrdinaryUserWhatItCannotSee) {
  if (geteuid() != 0) GTEST_SKIP() << "needs to be root to be somebody else";
  std::filesystem::permissions(folder.path(), std::filesystem::perms(0755));
  std::filesystem::create_directories(folder / "store");
  std::filesystem::permissions(folder / "store", std::filesystem::perms(0700));
  post(report().dump());
  std::filesystem::permissions(folder / "run/health.json", std::filesystem::perms(0600));
  const Outcome outcome =
      run("/usr/bin/setpriv",
          {"--reuid=64009", "--regid=64009", "--clear-groups", ZEB_CIM, "doctor", "--source",
           snapshotFile("teams"), "--plugin", ZEB_REAL_PLUGIN, "--schema", ZEB_SCHEMA_FILE},
          environment());
  EXPECT_EQ(outcome.status, 0) << outcome.out;
  EXPECT_THAT(outcome.out, HasSubstr("rights     -       an ordinary user: "));
  EXPECT_THAT(outcome.out, HasSubstr("store      -       " + (folder / "store").string()));
  EXPECT_THAT(outcome.out, HasSubstr("running    -       '" + (folder / "run/health.json").string() +
                                     "' cannot be read: "));
}

}  // namespace
}  // namespace ZebManager
