// How long an accepted password holds, with a clock that the test sets and a judge that it plays.
#include <gtest/gtest.h>
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

 private:
  void run() {
    const ZEB::FileDescriptor one(accept(_listening.get(), nullptr, nullptr));
    if (!one) return;
    FrameReader reader;
    while (reader.receive(one.get()) == Transfer::Done) {
      while (const auto frame = reader.next()) {
        EXPECT_EQ(attemptOf(*frame).password, "secret");
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
  Login login() { return authenticator.check(kUser, "192.0.2.1", "192.0.2.1"); }

  Judge judge;
  Authenticator authenticator{{.socket = judge.path()}, [](const std::string&) {}};
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

}  // namespace
}  // namespace ZebManager
