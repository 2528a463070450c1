// Commands beside a service: it is asked, and it is left alone when it should be.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <optional>
#include <thread>

#include "Process.h"
#include "Server.h"
#include "posix/FileDescriptor.h"
#include "support/Content.h"

namespace ZebManager {
namespace {

using testing::HasSubstr;
using testing::StartsWith;
using ZEB::test::contentOf;
namespace fs = std::filesystem;

const std::string kSettingsPath = R"(ZEB_EthEventSettings.InstanceId="JXV:0")";

class Commands : public testing::Test {
 protected:
  Outcome zebcim(const std::vector<std::string>& words, const SignalAfter& after = {}) const {
    return run(ZEB_CIM, words, environment(), after);
  }
  Outcome standalone(std::vector<std::string> words) const {
    words.insert(words.end(), {"--source", ZEB_SNAPSHOTS "/two_cards.json"});
    return zebcim(words);
  }
  std::vector<std::string> environment() const {
    return {"ZEB_CONFIG=/dev/null", "ZEB_STORE_DIR=" + (server.folder() / "store").string(),
            "ZEB_RUN_DIR=" + (server.folder() / "run").string(), "LC_ALL=C.UTF-8", "TZ=UTC"};
  }
  std::string socketPath() const { return (server.folder() / "run/zebcim/socket").string(); }
  ZEB::FileDescriptor connected() const {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    socketPath().copy(address.sun_path, sizeof address.sun_path - 1);
    ZEB::FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    EXPECT_EQ(connect(socket.get(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    return socket;
  }

  Server server{{"--source", ZEB_SNAPSHOTS "/two_cards.json"}};
};

TEST_F(Commands, SayOfAServiceWhatTheySayByThemselves) {
  const std::string port = zebcim({"instances", "ZEB_EthernetPort", "--names"}).out;
  const std::string path = port.substr(0, port.find('\n'));
  ASSERT_THAT(path, HasSubstr("root/jxv:ZEB_EthernetPort."));
  for (const std::vector<std::string>& words : {std::vector<std::string>{"classes"},
                                                {"instances", "ZEB_EthernetPort"},
                                                {"instances", "ZEB_EthernetPort", "--json"},
                                                {"instances", "ZEB_EthernetDevice", "--json=typed"},
                                                {"instances", "ZEB_EthernetPort", "--json", "--names"},
                                                {"instances", "ZEB_EthernetTeam", "--json"},
                                                {"instances", "CIM_System"},
                                                {"instances", "CIM_System", "--json"},
                                                {"instances", "CIM_Dependency", "--names"},
                                                {"instances", "ZEB_EthernetStatistics", "--json"},
                                                {"get", path},
                                                {"get", path, "--json"},
                                                {"associators", path},
                                                {"associators", path, "--names"},
                                                {"associators", path, "--assoc-class", "ZEB_EthernetDevice"},
                                                {"references", path, "--role", "PartComponent"},
                                                {"references", path, "--names"},
                                                {"tree"},
                                                {"tree", "--json"},
                                                {"get", kSettingsPath}}) {
    const Outcome asked = zebcim(words), own = standalone(words);
    EXPECT_EQ(asked.status, 0) << words[0];
    EXPECT_EQ(asked.err, "");
    EXPECT_EQ(asked.out, own.out) << words[0];
  }
}

TEST_F(Commands, RefuseLikeTheyDoByThemselves) {
  for (const std::vector<std::string>& words :
       {std::vector<std::string>{"get", R"(ZEB_EthEventSettings.InstanceId="none")"},
        {"get", "recording"},  // which something could be called
        {"instances", "ZEB_Nothing"},
        {"modify", kSettingsPath, "Nothing=1"},
        {"invoke", kSettingsPath, "Nothing"}}) {
    const Outcome asked = zebcim(words), own = standalone(words);
    EXPECT_EQ(asked.status, 1) << words[0];
    EXPECT_EQ(asked.out, "");
    EXPECT_EQ(asked.err, own.err) << words[0];
  }
}

TEST_F(Commands, SayWhoIsAsked) {
  EXPECT_EQ(zebcim({"-v", "get", kSettingsPath}).err,
            "zebcim: asking the service behind " + socketPath() + "\n");
  EXPECT_EQ(zebcim({"-v", "--standalone", "instances", "ZEB_EthEventSettings"}).err,
            "zebcim: loading the plug-in, as the options want it\n");
  EXPECT_EQ(server.stop(), 0);
  EXPECT_EQ(zebcim({"-v", "instances", "ZEB_EthEventSettings"}).err,
            "zebcim: no service listens at " + socketPath() + "; loading the plug-in\n");
  EXPECT_EQ(zebcim({"instances", "ZEB_EthEventSettings"}).err, "");
}

TEST_F(Commands, ChangeWhatTheServiceServes) {
  ASSERT_EQ(zebcim({"modify", kSettingsPath, "FloodThreshold=23"}).status, 0);
  EXPECT_THAT(ZebManager::exchange(server.http(), post(call("EnumerateInstances",
                                                            "<IPARAMVALUE NAME=\"ClassName\"><CLASSNAME "
                                                            "NAME=\"ZEB_EthEventSettings\"/></IPARAMVALUE>"),
                                                       "EnumerateInstances")),
              HasSubstr("<PROPERTY NAME=\"FloodThreshold\" TYPE=\"uint32\"><VALUE>23</VALUE>"));
}

TEST_F(Commands, ChangeNothingThatTheSchemaLetsNobodyWrite) {
  for (const bool service : {true, false}) {
    const std::vector<std::string> words = {"modify", kSettingsPath, "Caption=mine"};
    const Outcome refused = service ? zebcim(words) : standalone(words);
    EXPECT_EQ(refused.status, 1);
    EXPECT_THAT(refused.err,
                StartsWith("zebcim: ZEB_EthEventSettings.Caption cannot be written: can be written are "
                           "PollInterval, FloodThreshold, "));
  }
}

TEST_F(Commands, SayWhatIsNotKept) {
  const std::vector<std::string> words = {"modify", kSettingsPath, "FloodThreshold=24", "--source",
                                          ZEB_SNAPSHOTS "/two_cards.json"};
  const Outcome recording = run(ZEB_CIM, words, {"ZEB_CONFIG=/dev/null"});
  EXPECT_EQ(recording.status, 1);
  EXPECT_EQ(recording.err,
            "zebcim: changes of a recording are kept where ZEB_STORE_DIR says, and it says nothing\n");
  const Outcome nowhere = run(ZEB_CIM, words, {"ZEB_CONFIG=/dev/null", "ZEB_STORE_DIR=/dev/null/none"});
  EXPECT_EQ(nowhere.status, 1);
  EXPECT_THAT(nowhere.err, HasSubstr(R"(ZEB_EthEventSettings.InstanceId="JXV:0"': )"));
  EXPECT_EQ(standalone({"modify", kSettingsPath, "FloodThreshold=25"}).status, 0);
  EXPECT_THAT(zebcim({"get", kSettingsPath}).out, HasSubstr("FloodThreshold             25\n"));
}

TEST_F(Commands, RefuseAStoreThatDependsOnWhereTheyStand) {
  const Outcome refused =
      run(ZEB_CIM, {"--source", ZEB_SNAPSHOTS "/two_cards.json", "tree"}, {"ZEB_STORE_DIR=relative"});
  EXPECT_EQ(refused.status, 1);
  EXPECT_EQ(refused.err, "zebcim: ZEB_STORE_DIR is 'relative': expected a path that begins with /\n");
}

TEST_F(Commands, CallMethodsOfTheService) {
  const Outcome asked = zebcim({"invoke", "ZEB_AutoStartEthernetPort", "PerformWork"});
  EXPECT_EQ(asked.err, "");
  EXPECT_EQ(asked.out, standalone({"invoke", "ZEB_AutoStartEthernetPort", "PerformWork"}).out);
}

TEST_F(Commands, FindTheComputerSystemWhereAssociationsLead) {
  const std::string path = zebcim({"instances", "ZEB_ComputerSystem", "--names"}).out;
  const Outcome got = zebcim({"get", path.substr(0, path.find('\n'))});
  EXPECT_EQ(got.status, 0) << got.err;
  EXPECT_THAT(got.out, HasSubstr("ElementName        "));
}

TEST_F(Commands, LeaveAServiceAloneThatHasEndedInTheMiddle) {
  fs::remove(socketPath());
  fs::create_symlink("/dev/null", socketPath());
  EXPECT_EQ(zebcim({"get", kSettingsPath}).status, 0) << "what is no socket is no service";
}

/// Somebody keeps the folder of the stores to himself, so that the change hangs, and goes on doing so for
/// that long when the service is asked to end.
class CommandsAtTheEnd : public Commands {
 protected:
  Outcome changeWhileItIsHeldFor(std::chrono::milliseconds time) {
    EXPECT_EQ(zebcim({"get", kSettingsPath}).status, 0);
    ZEB::FileDescriptor folder(open((server.folder() / "store").c_str(), O_RDONLY | O_CLOEXEC));
    EXPECT_EQ(flock(folder.get(), LOCK_EX), 0);
    std::thread end([&] {
      std::this_thread::sleep_for(std::chrono::milliseconds(1500));
      std::thread([&] {
        std::this_thread::sleep_for(time);
        folder = {};
      }).swap(_release);
      EXPECT_EQ(server.stop(), 0);
    });
    const Outcome changed = zebcim({"modify", kSettingsPath, "PollInterval=61"});
    end.join();
    _release.join();
    return changed;
  }

 private:
  std::thread _release;
};

TEST_F(CommandsAtTheEnd, AreWaitedFor) {
  const Outcome changed = changeWhileItIsHeldFor(std::chrono::milliseconds(500));
  EXPECT_EQ(changed.status, 0) << changed.err;
}

TEST_F(CommandsAtTheEnd, AreAnsweredWhenTheyTakeTooLong) {
  const Outcome changed = changeWhileItIsHeldFor(std::chrono::seconds(8));
  EXPECT_EQ(changed.status, 1);
  EXPECT_THAT(changed.err, HasSubstr("the server ends; whether it has taken effect is not known"));
}

TEST_F(Commands, KeepTheServiceFromNobody) {
  std::vector<ZEB::FileDescriptor> idle;
  for (int i = 0; i < 16; ++i) idle.push_back(connected());
  // One user has so many; root is one.
  const Outcome refused = zebcim({"get", kSettingsPath});
  EXPECT_EQ(refused.status, 1);
  EXPECT_EQ(refused.err, "zebcim: the service answers too many commands at once\n");
  idle.clear();
  Outcome answered;
  for (int i = 0; i < 100 && answered.status != 0; ++i) answered = zebcim({"get", kSettingsPath});
  EXPECT_EQ(answered.status, 0) << answered.err;
}

TEST_F(Commands, GarbageEndsItsConnectionAlone) {
  const std::string header("\x02\0\0\0\xff\xff\xff\xff\0\0\0\0\0\0\0\0", 16);
  for (const std::string& bytes : {std::string(64, '\xff'), header, std::string("GET / HTTP/1.1\r\n\r\n")}) {
    const ZEB::FileDescriptor socket = connected();
    ASSERT_EQ(write(socket.get(), bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    char byte = 0;
    EXPECT_EQ(read(socket.get(), &byte, 1), 0) << "the connection is closed without an answer";
  }
  EXPECT_EQ(zebcim({"get", kSettingsPath}).status, 0);
}

TEST_F(Commands, LeaveTheReportsOfTheServiceAlone) {
  ASSERT_EQ(zebcim({"invoke", "ZEB_AutoStartEthernetPort", "PerformWork"}).status, 0);
  const auto report = [&] { return contentOf(server.folder() / "run/health.json"); };
  ASSERT_THAT(report(), HasSubstr("\"process\":"));
  ASSERT_EQ(zebcim({"--standalone", "watch", "--for", "1"}).status, 0);
  EXPECT_THAT(report(), HasSubstr("zebcim-plugin"));
}

TEST_F(Commands, ASecondServerOfTheSameStateIsRefused) {
  const Outcome second = run(ZEB_CIM,
                             {"--source", ZEB_SNAPSHOTS "/two_cards.json", "serve", "--http", "127.0.0.1:0",
                              "--https", "none", "--state", (server.folder() / "state").string()},
                             environment());
  EXPECT_EQ(second.status, 1);
  EXPECT_EQ(second.err, "zebcim: another server uses the state folder " +
                            (server.folder() / "state").string() + "; --state names another one\n");
}

TEST_F(Commands, ExplainWhatTheServiceServes) {
  const std::vector<std::string> words = {"explain", "eth2", "Speed"};
  const Outcome asked = zebcim(words);
  EXPECT_EQ(asked.status, 0) << asked.err;
  EXPECT_THAT(asked.out, HasSubstr("Speed = 1000000000"));
  EXPECT_EQ(asked.out, standalone(words).out);
}

TEST_F(Commands, ServeNoRecordingThatIsNone) {
  const std::string file = (server.folder() / "bad.json").string();
  std::ofstream(file) << "{\"format\": ";
  const Outcome refused = zebcim({"--source", file, "serve", "--http", "127.0.0.1:0", "--https", "none"});
  EXPECT_EQ(refused.status, 1);
  EXPECT_EQ(refused.out, "");
  EXPECT_THAT(refused.err, HasSubstr("does not start: snapshot " + file + ": expected one JSON object\n"));
  EXPECT_EQ(std::ranges::count(refused.err, '\n'), 1) << refused.err;
}

TEST_F(Commands, FindNoServiceWhereTheRunDirectoryIsNone) {
  std::vector<std::string> nowhere = environment();
  std::erase_if(nowhere, [](const std::string& variable) { return variable.starts_with("ZEB_RUN_DIR="); });
  nowhere.emplace_back("ZEB_RUN_DIR=none");
  EXPECT_EQ(run(ZEB_CIM, {"-v", "instances", "ZEB_EthEventSettings"}, nowhere, {}).err,
            "zebcim: the run directory is none, in which a service would be found; loading the plug-in\n");
  const Outcome refused = run(ZEB_CIM,
                              {"--source", ZEB_SNAPSHOTS "/two_cards.json", "serve", "--http", "none",
                               "--https", "none", "--state", (server.folder() / "nowhere").string()},
                              nowhere, {});
  EXPECT_EQ(refused.status, 1);
  EXPECT_EQ(refused.err,
            "zebcim: commands do not find this service: the run directory is none\n"
            "zebcim: there is nowhere to listen at\n");
  EXPECT_FALSE(fs::exists("none"));
  EXPECT_THAT(run(ZEB_CIM, {"doctor"}, nowhere, {}).out,
              HasSubstr("the run directory is none, in which would be reported"));
}

TEST_F(Commands, ARecordingHasFoldersOfItsOwn) {
  const ZEB::TemporaryFolder machine;
  const std::vector<std::string> live = {"ZEB_CONFIG=" + (machine / "qv-zeb.toml").string(),
                                         "TMPDIR=" + machine.path().string()};
  std::ofstream(machine / "qv-zeb.toml") << "store-directory = \"" << (machine / "store").string()
                                         << "\"\nrun-directory = \"" << (machine / "run").string() << "\"\n";
  for (const std::vector<std::string>& words : {std::vector<std::string>{"tree"},
                                                {"watch", "--for", "1"},
                                                {"invoke", "ZEB_AutoStartEthernetPort", "PerformWork"}}) {
    std::vector<std::string> all = {"--source", ZEB_SNAPSHOTS "/two_cards.json"};
    all.insert(all.end(), words.begin(), words.end());
    EXPECT_EQ(run(ZEB_CIM, all, live).status, 0);
  }
  std::vector<std::string> left;
  for (const auto& entry : fs::directory_iterator(machine.path())) left.push_back(entry.path().filename());
  EXPECT_THAT(left, testing::ElementsAre("qv-zeb.toml"));
}

TEST_F(Commands, AServerOfARecordingHasFoldersOfItsOwn) {
  const ZEB::TemporaryFolder machine;
  std::ofstream(machine / "qv-zeb.toml") << "store-directory = \"" << (machine / "store").string()
                                         << "\"\nrun-directory = \"" << (machine / "run").string() << "\"\n";
  std::ofstream(machine / "zebcim.toml") << "[listen]\nhttp = \"127.0.0.1:0\"\nhttps = \"none\"\n";
  const Outcome served =
      run("/bin/sh",
          {"-c",
           "exec 3<&1; \"$@\" >$TMPDIR/out & while [ ! -s $TMPDIR/out ]; do sleep 0.05; done; ls $TMPDIR; "
           "kill $!; "
           "wait $!; echo $?; ls $TMPDIR",
           "sh", ZEB_CIM, "--source", ZEB_SNAPSHOTS "/two_cards.json", "serve", "--config",
           (machine / "zebcim.toml").string()},
          {"ZEB_CONFIG=" + (machine / "qv-zeb.toml").string(), "TMPDIR=" + machine.path().string()});
  EXPECT_THAT(served.out, testing::MatchesRegex("out\nqv-zeb.toml\nzebcim-......\nzebcim.toml\n0\n"
                                                "out\nqv-zeb.toml\nzebcim.toml\n"));
}

}  // namespace
}  // namespace ZebManager
