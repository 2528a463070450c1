// Logins: whatever PAM's modules do, and however many guess.
#include <gmock/gmock.h>
#include <sys/stat.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <thread>

#include "Attack.h"
#include "Ground.h"
#include "TestAuthority.h"
#include "TlsClient.h"
#include "Unit.h"
#include "support/Content.h"
#include "support/Length.h"

namespace ZebManager {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::HasSubstr;
using testing::Not;
using ZEB::test::contentOf;
using Clock = std::chrono::steady_clock;

const std::vector<std::string> kOnePort = {"--source", ZEB_SNAPSHOTS "/one_port.json"};
constexpr char kUnix[] = "auth required pam_unix.so\naccount required pam_unix.so\n";

std::string reading(const std::string& user, const std::string& password) {
  return namesOfClasses(credentials(user, password));
}

std::string writingAs(const std::string& headers) {
  return post(
      call("SetProperty",
           "<IPARAMVALUE NAME=\"InstanceName\"><INSTANCENAME CLASSNAME=\"ZEB_EthEventSettings\">"
           "<KEYBINDING NAME=\"InstanceId\"><KEYVALUE>JXV:0</KEYVALUE></KEYBINDING></INSTANCENAME>"
           "</IPARAMVALUE><IPARAMVALUE NAME=\"PropertyName\"><VALUE>PollInterval</VALUE></IPARAMVALUE>"
           "<IPARAMVALUE NAME=\"NewValue\"><VALUE>300</VALUE></IPARAMVALUE>"),
      "SetProperty", "root/jxv", headers + "Connection: close\r\n");
}

std::string writing(const std::string& user, const std::string& password) {
  return writingAs(credentials(user, password));
}

TEST(Login, AModuleThatTakesMuchStackEndsNothing) {
  Server server(kOnePort);
  std::ofstream(server.folder() / "pam/zebcim")
      << "auth optional pam_cap.so\nauth required pam_permit.so\naccount required pam_permit.so\n";
  std::atomic<int> answered = 0;
  together(4, [&](int client) {
    for (int round = 0; round < 10; ++round) {
      const std::string password = std::to_string(client) + "." + std::to_string(round);
      answered += statusOf(ask(server.http(), reading("root", password))) == 200;
    }
  });
  EXPECT_EQ(answered, 40);
}

TEST(Login, EachUserGetsWhatIsTheirs) {
  REQUIRE_GROUND();
  const Unit unit({.stack = std::string("auth optional pam_cap.so\n") + kUnix});
  EXPECT_EQ(statusOf(ask(unit.http(), reading("reader", "secret"))), 200);
  EXPECT_THAT(ask(unit.http(), writing("reader", "secret")), HasSubstr("<ERROR CODE=\"2\""));
  EXPECT_THAT(ask(unit.http(), writing("writer", "secret")),
              AllOf(HasSubstr("200 OK"), Not(HasSubstr("<ERROR"))));
  for (const char* const user : {"expired", "aged", "locked", "nobody", "unknown"}) {
    EXPECT_EQ(statusOf(ask(unit.http(), reading(user, "secret"))), 401) << user;
  }
  EXPECT_EQ(statusOf(ask(unit.http(), reading("reader", "guess"))), 401);
}

/// As the modules that distributions bring along would have it.
TEST(Login, AnEmptyPasswordLetsNobodyIn) {
  REQUIRE_GROUND();
  const Unit unit({.stack = "auth required pam_unix.so nullok\naccount required pam_unix.so\n"});
  EXPECT_EQ(statusOf(ask(unit.http(), reading("blank", ""))), 401);
  EXPECT_EQ(statusOf(ask(unit.http(), reading("reader", "secret"))), 200);
}

/// As a group and an account have it, without a password.
TEST(Login, ACertificateGivesEachUserWhatIsTheirs) {
  REQUIRE_GROUND();
  const ZEB::TemporaryFolder folder;
  std::filesystem::permissions(folder.path(), std::filesystem::perms(0755));
  const TestAuthority authority;
  std::ofstream(folder / "ca.pem") << authority.certificate();
  const std::string names[] = {"reader", "writer", "nobody", "expired", "aged", "locked", "unknown"};
  std::string settings =
      "[listen]\nclient-ca = \"" + (folder / "ca.pem").string() + "\"\n[access.certificates]\n";
  for (const std::string& name : names) settings += name + " = \"" + name + "\"\n";
  const Unit unit({.settings = settings, .stack = kUnix});
  const auto asked = [&](const std::string& name, const std::string& request) {
    const Identity identity = authority.issue({.commonName = name});
    return TlsClient(unit.https(), "NORMAL", identity.certificate, identity.key).ask(request);
  };
  EXPECT_EQ(statusOf(asked("reader", namesOfClasses())), 200);
  EXPECT_EQ(statusOf(asked("nobody", namesOfClasses())), 200) << "who never had a password";
  EXPECT_THAT(asked("reader", writingAs("")), HasSubstr("<ERROR CODE=\"2\""));
  EXPECT_THAT(asked("writer", writingAs("")), AllOf(HasSubstr("200 OK"), Not(HasSubstr("<ERROR"))));
  for (const char* const user : {"expired", "aged", "locked", "unknown"}) {
    EXPECT_EQ(statusOf(asked(user, namesOfClasses())), 401) << user;
  }
  EXPECT_THAT(unit.log(), HasSubstr("signed in from 127.0.0.1: 'writer' with the certificate 'CN=writer'\n"));
  EXPECT_THAT(unit.log(), HasSubstr("refused from 127.0.0.1: 'locked' with the certificate 'CN=locked'\n"));
}

/// What the units give to each of the processes is enough.
TEST(Login, EachProcessHasTheRightsThatItNeeds) {
  REQUIRE_GROUND();
  const Unit unit;
  ASSERT_EQ(statusOf(ask(unit.http(), reading("reader", "secret"))), 200);
  ASSERT_EQ(statusOf(ask(unit.http(), instancesOf("ZEB_EthernetPort"))), 200);
  const auto plugin = unit.processes("zebcim-plugin"), login = unit.processes("zebcim-login");
  ASSERT_EQ(plugin.size(), 1U);
  ASSERT_EQ(login.size(), 1U);
  for (const auto& [process, rights] : {std::pair(unit.server(), "0000000000000000"),
                                        {plugin[0], "0000000000001000"},    // CAP_NET_ADMIN
                                        {login[0], "0000000020000000"}}) {  // CAP_AUDIT_WRITE
    const auto known = statusOf(process);
    EXPECT_EQ(known.at("CapEff"), rights) << known.at("Name");
    EXPECT_EQ(known.at("CapBnd"), rights) << known.at("Name");
    EXPECT_EQ(known.at("NoNewPrivs"), "1") << known.at("Name");
  }
  EXPECT_EQ(statusOf(unit.server()).at("Uid").substr(0, 5), std::to_string(kServerUser));
}

/// A script of PAM's that writes a line for each attempt.
std::string noting(const std::string& what) {
  return "auth optional pam_exec.so quiet /run/ground/" + what + "\n";
}
void makeScript(const std::string& name, const std::string& text) {
  const std::string file = "/run/ground/" + name;
  std::ofstream(file) << "#!/bin/sh\n" << text;
  chmod(file.c_str(), 0755);
}

TEST(Login, ModulesKnowWhereAnAttemptComesFrom) {
  REQUIRE_GROUND();
  makeScript("host", "echo \"$PAM_USER $PAM_RHOST\" >>/run/ground/hosts\n");
  const Unit unit({.stack = noting("host") + kUnix, .http = "*:0"});
  const std::string port = unit.http().substr(unit.http().rfind(':'));
  EXPECT_EQ(statusOf(ask("192.0.2.1" + port, reading("reader", "secret"))), 200);
  EXPECT_EQ(statusOf(ask("127.0.0.1" + port, reading("writer", "secret"))), 200);
  EXPECT_EQ(contentOf("/run/ground/hosts"), "reader 192.0.2.1\nwriter 127.0.0.1\n");
}

TEST(Login, FailuresCountForTheModuleThatLocksUsers) {
  REQUIRE_GROUND();
  const Unit unit({.stack = "auth requisite pam_faillock.so preauth deny=3 unlock_time=600\n"
                            "auth sufficient pam_unix.so\n"
                            "auth [default=die] pam_faillock.so authfail deny=3 unlock_time=600\n"
                            "account required pam_faillock.so\naccount required pam_unix.so\n"});
  EXPECT_EQ(statusOf(ask(unit.http(), reading("reader", "secret"))), 200);
  for (const char* const guess : {"a", "b", "c"}) {
    EXPECT_EQ(statusOf(ask(unit.http(), reading("writer", guess))), 401);
  }
  EXPECT_TRUE(std::filesystem::exists("/run/faillock/writer"));
  EXPECT_EQ(statusOf(ask(unit.http(), reading("writer", "secret"))), 401) << "it is locked";
  EXPECT_EQ(statusOf(ask(unit.http(), reading("reader", "secret"))), 200);
}

TEST(Login, AModuleThatEndsItsProcessLetsNobodyIn) {
  REQUIRE_GROUND();
  makeScript("end", "kill -KILL $PPID\n");
  const Unit unit({.stack = noting("end") + kUnix});
  EXPECT_EQ(statusOf(ask(unit.http(), reading("reader", "secret"))), 401);
  std::ofstream(unit.folder() / "pam/zebcim") << kUnix;
  EXPECT_EQ(statusOf(ask(unit.http(), reading("reader", "secret"))), 200);
}

/// How many attempts were judged at once, by lines "begin" and "end".
int mostAtOnce(const std::string& lines) {
  int now = 0, most = 0;
  std::istringstream in(lines);
  for (std::string line; in >> line;) most = std::max(most, now += line == "begin" ? 1 : -1);
  return most;
}

/// 250 connections that guess, beside a console that is known, a reader without a name, and one who logs in.
TEST(Login, GuessersDisturbNobody) {
  REQUIRE_GROUND();
  makeScript("slow", "echo begin >>/run/ground/judged\nsleep 0.1\necho end >>/run/ground/judged\n");
  const Unit unit({.stack = noting("slow") + kUnix, .http = "*:0"});
  const std::string port = unit.http().substr(unit.http().rfind(':'));
  const std::string here = "127.0.0.1" + port, elsewhere = "192.0.2.1" + port;
  ASSERT_EQ(statusOf(ask(elsewhere, reading("writer", "secret"))), 200);
  ASSERT_EQ(statusOf(ask(here, instancesOf("ZEB_EthernetPort"))), 200);
  const auto end = Clock::now() + std::chrono::seconds(ZEB::test::length(15, 600));
  std::atomic<int> guesses = 0, wrong = 0;
  std::atomic<std::size_t> memory = 0;
  std::vector<double> times;
  std::thread crowd([&] {
    together(250, [&](int guesser) {
      for (int round = 0; Clock::now() < end; ++round) {
        const std::string password = std::to_string(guesser) + "." + std::to_string(round);
        const int status = statusOf(ask(guesser % 2 == 0 ? here : elsewhere,
                                        reading("user" + std::to_string(guesser % 10), password)));
        ++guesses;
        wrong += status == 200;
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
      }
    });
  });
  int refused = 0;
  while (Clock::now() < end) {
    const auto begin = Clock::now();
    EXPECT_EQ(statusOf(ask(here, instancesOf("ZEB_EthernetPort"))), 200);
    times.push_back(std::chrono::duration<double, std::milli>(Clock::now() - begin).count());
    refused += statusOf(ask(elsewhere, reading("writer", "secret"))) != 200;
    memory = std::max<std::size_t>(memory, unit.memory());
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  crowd.join();
  std::sort(times.begin(), times.end());
  const double p99 = times.at(times.size() * 99 / 100);
  std::cout << guesses << " guesses, a reader's p99 " << p99 << " ms, memory " << (memory >> 20) << " MiB\n";
  EXPECT_EQ(wrong, 0);
  EXPECT_EQ(refused, 0) << "who has been let in before";
  EXPECT_LT(memory, 256U << 20);
  EXPECT_LT(p99, 100.0);
  EXPECT_LE(mostAtOnce(contentOf("/run/ground/judged")), 2);
}

}  // namespace
}  // namespace ZebManager
