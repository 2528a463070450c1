// How long an accepted password holds, with a clock that the test sets and a judge that it plays.
#include <gmock/gmock.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <atomic>
#include <cstring>
#include <thread>

#include "posix/TemporaryFolder.h"
#include "server/Authenticator.h"

namespace {
std::atomic<std::chrono::seconds> passed{std::chrono::seconds(0)};
}

// The linker leads whoever asks for the time here.
namespace std::chrono {
steady_clock::time_point realNow() asm("__real__ZNSt6chrono3_V212steady_clock3nowEv");
steady_clock::time_point wrappedNow() asm("__wrap__ZNSt6chrono3_V212steady_clock3nowEv");
steady_clock::time_point wrappedNow() {
  return realNow() + passed.load();
}
}  // namespace std::chrono

namespace ZebManager {
namespace {

using namespace std::chrono_literals;

constexpr char kUser[] = "Basic dXNlcjpzZWNyZXQ=";  // user:secret

/// Whoever listens where logins are judged; answers one connection.
class Judge {
 public:
  Judge() : _listening(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, path().c_str(), sizeof address.sun_path - 1);
    EXPECT_EQ(bind(_listening.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    EXPECT_EQ(listen(_listening.get(), 1), 0);
    _thread = std::thread([this] { run(); });
  }
  ~Judge() {
    shutdown(_listening.get(), SHUT_RDWR);
    _thread.join();
  }

  std::string path() const { return (_folder / "judge").string(); }

  std::atomic<Verdict> verdict{Verdict::MayRead};
  std::atomic<int> asked{0};
  std::atomic<int> withCertificate{0};

 private:
  void run() {
    const ZEB::FileDescriptor one(accept(_listening.get(), nullptr, nullptr));
    if (!one) return;
    FrameReader reader;
    while (reader.receive(one.get()) == Transfer::Done) {
      while (const auto frame = reader.next()) {
        const LoginAttempt attempt = attemptOf(*frame);
        if (attempt.password) {
          EXPECT_EQ(attempt.password, "secret");
        } else {
          ++withCertificate;
        }
        ++asked;
        FrameSender(one.get()).send(frameOf(verdict.load()));
      }
    }
  }

  const ZEB::TemporaryFolder _folder;
  ZEB::FileDescriptor _listening;
  std::thread _thread;
};

class AuthenticatorTest : public testing::Test {
 protected:
  ~AuthenticatorTest() override { passed = 0s; }
  Login login(const std::string& host = "192.0.2.1") { return authenticator.check(kUser, host, host); }
  Login show(const ShownCertificate& certificate) {
    return authenticator.check(certificate, "192.0.2.1", "192.0.2.1");
  }

  Judge judge;
  std::vector<std::string> lines;
  Authenticator authenticator{{.socket = judge.path()},
                              [this](const std::string& line) { lines.push_back(line); }};
};

TEST_F(AuthenticatorTest, APasswordThatWasAcceptedHoldsForHalfAMinute) {
  ASSERT_TRUE(login().user);
  EXPECT_EQ(judge.asked, 1);
  judge.verdict = Verdict::Refused;
  passed = 20s;
  const Login remembered = login();
  ASSERT_TRUE(remembered.user);
  EXPECT_EQ(remembered.user->name, "user");
  EXPECT_FALSE(remembered.user->mayWrite);
  EXPECT_EQ(judge.asked, 1);
  passed = 40s;
  EXPECT_FALSE(login().user) << "the password was taken away meanwhile";
  EXPECT_EQ(judge.asked, 2);
  EXPECT_FALSE(login().user);
  EXPECT_EQ(judge.asked, 3);
}

TEST_F(AuthenticatorTest, WhoHasNoNameOrCredentialsOfAnotherKindIsNotJudged) {
  // :secret, and user:secret
  for (const char* const credentials : {"Basic OnNlY3JldA==", "Token dXNlcjpzZWNyZXQ="})
    EXPECT_FALSE(authenticator.check(credentials, "192.0.2.1", "192.0.2.1").user) << credentials;
  EXPECT_EQ(judge.asked, 0);
}

TEST_F(AuthenticatorTest, WhoMayWriteIsAskedAnewToo) {
  judge.verdict = Verdict::MayWrite;
  EXPECT_TRUE(login().user->mayWrite);
  judge.verdict = Verdict::MayRead;
  passed = 31s;
  EXPECT_FALSE(login().user->mayWrite);
}

TEST_F(AuthenticatorTest, AUserIsKnownForAnHour) {
  EXPECT_FALSE(authenticator.knownBefore(kUser));
  ASSERT_TRUE(login().user);
  EXPECT_EQ(authenticator.knownBefore(kUser), "user");
  passed = 3590s;
  EXPECT_EQ(authenticator.knownBefore(kUser), "user");
  passed = 3610s;
  EXPECT_FALSE(authenticator.knownBefore(kUser));
}

TEST_F(AuthenticatorTest, AUserWhoIsRefusedIsKnownNoMore) {
  ASSERT_TRUE(login().user);
  judge.verdict = Verdict::Refused;
  passed = 31s;
  EXPECT_FALSE(login().user);
  EXPECT_FALSE(authenticator.knownBefore(kUser));
}

const ShownCertificate kConsole{"console", "CN=it's", ""};

/// With it nothing but the account is judged, and that anew after half a minute.
TEST_F(AuthenticatorTest, ACertificateSignsInWhoseAccountIsValid) {
  judge.verdict = Verdict::MayWrite;
  const Login first = show(kConsole);
  ASSERT_TRUE(first.user);
  EXPECT_EQ(first.user->name, "console");
  EXPECT_TRUE(first.user->mayWrite);
  EXPECT_EQ(authenticator.knownBefore(kConsole), "console");
  judge.verdict = Verdict::Refused;
  passed = 20s;
  EXPECT_TRUE(show(kConsole).user);
  passed = 40s;
  EXPECT_FALSE(show(kConsole).user);
  EXPECT_FALSE(authenticator.knownBefore(kConsole));
  EXPECT_EQ(judge.withCertificate, 2);
}

TEST_F(AuthenticatorTest, ACertificateOfNobodyIsNotJudged) {
  const Login login = show({"", "CN=it", "it is late"});
  EXPECT_FALSE(login.user);
  EXPECT_EQ(login.later, 0s);
  EXPECT_EQ(judge.asked, 0);
  EXPECT_THAT(lines, testing::ElementsAre("refused from 192.0.2.1: the certificate 'CN=it' (it is late)"));
}

TEST_F(AuthenticatorTest, WhoGuessesAtAPasswordHoldsUpNoCertificate) {
  judge.verdict = Verdict::Refused;
  for (int i = 0; i < 4; ++i) login();
  EXPECT_EQ(login().later, 1s);
  EXPECT_EQ(authenticator.check({"user", "CN=user", ""}, "192.0.2.2", "192.0.2.2").later, 0s);
  EXPECT_EQ(authenticator.check(kUser, "192.0.2.2", "192.0.2.2").later, 1s) << "the password of that user";
}

TEST_F(AuthenticatorTest, EachAddressFromWhichAUserSignsInIsALine) {
  for (const char* const host : {"192.0.2.1", "192.0.2.1", "192.0.2.2", "192.0.2.1"}) login(host);
  passed = 31s;
  login();
  show(kConsole);
  EXPECT_THAT(lines, testing::ElementsAre(
                         "signed in from 192.0.2.1: 'user' with a password",
                         "signed in from 192.0.2.2: 'user' with a password",
                         R"(signed in from 192.0.2.1: 'console' with the certificate 'CN=it\x27s')"));
}

TEST_F(AuthenticatorTest, EachRefusalIsALineAndWhoGoesOnHasTenAMinute) {
  judge.verdict = Verdict::Refused;
  login();
  EXPECT_THAT(lines, testing::ElementsAre("refused from 192.0.2.1: 'user' with a password"));
  for (int i = 0; i < 100; ++i) show({"", "x", "late"});
  ASSERT_EQ(lines.size(), 10U);
  EXPECT_EQ(lines[8], "refused from 192.0.2.1: the certificate 'x' (late)");
  EXPECT_EQ(lines[9], lines[8] + "; further ones of this minute are not told");
  authenticator.check("Bearer x", "192.0.2.2", "192.0.2.2");
  EXPECT_EQ(lines.back(), "refused from 192.0.2.2: a login that cannot be read");
  passed = 61s;
  show({"", "x", "late"});
  EXPECT_EQ(lines.size(), 12U);
}

}  // namespace
}  // namespace ZebManager
