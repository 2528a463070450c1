// Clients that sign in with a certificate.
#include <gmock/gmock.h>

#include <fstream>

#include "Process.h"
#include "Server.h"
#include "TestAuthority.h"
#include "attack/TlsClient.h"
#include "posix/TemporaryFolder.h"

namespace ZebManager {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr char kReaderMail[] = "reader@example.org";
constexpr char kClose[] = "Connection: close\r\n";
// root:secret and daemon:wrong
constexpr char kRoot[] = "Authorization: Basic cm9vdDpzZWNyZXQ=\r\nConnection: close\r\n";
constexpr char kWrong[] = "Authorization: Basic ZGFlbW9uOndyb25n\r\nConnection: close\r\n";

std::string reading(const std::string& headers = kClose) {
  return post(call("EnumerateClassNames", ""), "EnumerateClassNames", "root/jxv", headers);
}

std::string writing(const std::string& headers = kClose) {
  return post(
      call("SetProperty",
           "<IPARAMVALUE NAME=\"InstanceName\"><INSTANCENAME CLASSNAME=\"ZEB_EthEventSettings\">"
           "<KEYBINDING NAME=\"InstanceId\"><KEYVALUE>JXV:0</KEYVALUE></KEYBINDING></INSTANCENAME>"
           "</IPARAMVALUE><IPARAMVALUE NAME=\"PropertyName\"><VALUE>PollInterval</VALUE></IPARAMVALUE>"
           "<IPARAMVALUE NAME=\"NewValue\"><VALUE>300</VALUE></IPARAMVALUE>"),
      "SetProperty", "root/jxv", headers);
}

const auto kDone = AllOf(StartsWith("HTTP/1.1 200 "), Not(HasSubstr("<ERROR")));
const auto kRefused = StartsWith("HTTP/1.1 401 ");

/// "console" is root, who may write; a reader's address for mail is daemon, who may not.
class Certificates : public testing::Test {
 protected:
  std::string settings() const {
    std::ofstream(_folder / "ca.pem") << authority.certificate();
    return "[listen]\nclient-ca = \"" + (_folder / "ca.pem").string() +
           "\"\n[access.certificates]\n\"console\" = \"root\"\n\"" + kReaderMail + "\" = \"daemon\"\n";
  }

  std::string ask(const Identity& identity, const std::string& request) const {
    TlsClient client(server.https(), "NORMAL", identity.certificate, identity.key);
    return client.connected() ? client.ask(request) : "no connection";
  }

 private:
  const ZEB::TemporaryFolder _folder;

 protected:
  const TestAuthority authority;
  const Server server{{"--source", ZEB_SNAPSHOTS "/one_port.json"}, settings()};
  const Identity console = authority.issue({.commonName = "console"});
};

TEST_F(Certificates, SignInWhomTheyAreFor) {
  EXPECT_THAT(ask(console, writing()), kDone);
  for (const char* const version : {"NORMAL:-VERS-ALL:+VERS-TLS1.2", "NORMAL:-VERS-ALL:+VERS-TLS1.3"}) {
    EXPECT_THAT(TlsClient(server.https(), version, console.certificate, console.key).ask(writing()), kDone);
  }
  const Identity reader = authority.issue({.names = {{GNUTLS_SAN_RFC822NAME, kReaderMail}}});
  EXPECT_THAT(ask(reader, reading()), kDone);
  EXPECT_THAT(ask(reader, writing()), HasSubstr("<ERROR CODE=\"2\""));
  EXPECT_THAT(ask(authority.issue({.commonName = "console", .purpose = ""}), writing()), kDone)
      << "one that names no purpose is for any";
}

TEST_F(Certificates, CountForEachRequestOfAConnection) {
  const std::string both = ask(console, writing("") + writing());
  EXPECT_THAT(both, kDone);
  EXPECT_NE(both.find("HTTP/1.1 200 "), both.rfind("HTTP/1.1 200 "));
}

TEST_F(Certificates, CountNoMoreWhenTheirTimeIsOver) {
  const Identity brief = authority.issue({.commonName = "console", .end = 5});
  TlsClient client(server.https(), "NORMAL", brief.certificate, brief.key);
  EXPECT_THAT(client.ask(writing(""), "</CIM>"), kDone);
  std::this_thread::sleep_for(std::chrono::seconds(7));
  EXPECT_THAT(client.ask(writing()), kRefused);
}

TEST_F(Certificates, ThatAreNotGoodLetNobodyIn) {
  const TestAuthority other;
  const std::pair<const char*, Identity> all[] = {
      {"expired", authority.issue({.commonName = "console", .begin = -7200, .end = -60})},
      {"not yet in date", authority.issue({.commonName = "console", .begin = 3600, .end = 7200})},
      {"of another authority of that name", other.issue({.commonName = "console"})},
      {"of a server", authority.issue({.commonName = "console", .purpose = GNUTLS_KP_TLS_WWW_SERVER})},
      {"not known", authority.issue({.commonName = "consol"})},
      {"known by a longer name", authority.issue({.commonName = std::string("console\0", 8)})},
      {"without a name", authority.issue({})},
  };
  for (const auto& [what, identity] : all) {
    EXPECT_THAT(ask(identity, reading()), kRefused) << what << ", though anybody here may read";
    EXPECT_THAT(ask(identity, writing()), kRefused) << what;
    EXPECT_THAT(ask(identity, writing(kRoot)), kDone) << what << ", with a password";
  }
}

TEST_F(Certificates, LeadToOneUserByTheNamesBesideTheSubject) {
  using San = std::pair<gnutls_x509_subject_alt_name_t, std::string>;
  const auto named = [&](std::vector<San> names) {
    return authority.issue({.commonName = "console", .names = std::move(names)});
  };
  EXPECT_THAT(ask(named({{GNUTLS_SAN_RFC822NAME, "else@example.org"}}), reading()), kRefused);
  EXPECT_THAT(ask(named({{GNUTLS_SAN_RFC822NAME, kReaderMail}}), writing()), HasSubstr("<ERROR CODE=\"2\""));
  EXPECT_THAT(ask(named({{GNUTLS_SAN_DNSNAME, "console"}}), writing()), kDone);
  EXPECT_THAT(ask(named({{GNUTLS_SAN_URI, "console"}, {GNUTLS_SAN_DNSNAME, "other"}}), writing()), kDone);
  EXPECT_THAT(ask(named({{GNUTLS_SAN_RFC822NAME, kReaderMail}, {GNUTLS_SAN_DNSNAME, "console"}}), reading()),
              kRefused)
      << "two users";
  std::vector<San> many(64, {GNUTLS_SAN_DNSNAME, "other"});
  many.emplace_back(GNUTLS_SAN_DNSNAME, "console");
  EXPECT_THAT(ask(named(many), reading()), kRefused);
  EXPECT_THAT(
      ask(named({{GNUTLS_SAN_DNSNAME, "console"}, {GNUTLS_SAN_DNSNAME, std::string(257, 'x')}}), reading()),
      kRefused);
}

TEST_F(Certificates, StandBehindAPassword) {
  EXPECT_THAT(ask(console, writing(kWrong)), kRefused);
}

TEST_F(Certificates, AreNotNeeded) {
  EXPECT_THAT(ask({}, reading()), kDone);
  EXPECT_THAT(ask({}, writing()), kRefused);
  EXPECT_THAT(ask({}, writing(kRoot)), kDone);
  EXPECT_THAT(ZebManager::exchange(server.http(), reading()), kDone);
}

/// An account that PAM does not let in is not let in with a certificate either.
TEST_F(Certificates, DoNotOpenAnAccountThatIsClosed) {
  std::ofstream(server.folder() / "pam/zebcim")
      << "auth required pam_permit.so\naccount required pam_deny.so\n";
  EXPECT_THAT(ask(console, reading()), kRefused);
}

TEST(CertificateFiles, ThatCannotBeUsedAreNamed) {
  const ZEB::TemporaryFolder folder;
  const std::string file = (folder / "zebcim.toml").string(), ca = (folder / "ca.pem").string();
  std::ofstream(file) << "[listen]\nclient-ca = \"" << ca
                      << "\"\n[access.certificates]\nconsole = \"root\"\n";
  const auto start = [&] {
    return run(ZEB_CIM,
               {"--plugin", ZEB_REAL_PLUGIN, "--source", ZEB_SNAPSHOTS "/one_port.json", "serve", "--config",
                file, "--http", "none", "--https", "127.0.0.1:0", "--state", (folder / "state").string()});
  };
  EXPECT_EQ(start().err, "zebcim: cannot read " + ca + ": No such file or directory\n");
  std::ofstream(ca) << "no certificate\n";
  const Outcome bad = start();
  EXPECT_EQ(bad.status, 1);
  EXPECT_THAT(bad.err, StartsWith("zebcim: cannot use the certificates of " + ca + ": "));
}

}  // namespace
}  // namespace ZebManager
