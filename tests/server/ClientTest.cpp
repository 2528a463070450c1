// Debian's command-line WBEM client against the server: every operation that it has.
#include <gmock/gmock.h>
#include <unistd.h>

#include "Process.h"
#include "Server.h"

namespace ZebHost {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr char kClient[] = "/usr/bin/wbemcli";
constexpr char kPort[] =
    "ZEB_EthernetPort.CreationClassName=\"ZEB_EthernetPort\",SystemCreationClassName=\"ZEB_ComputerSystem\","
    "SystemName=\"HOST\",DeviceID=\"JXV:ZEB_EthernetPort:1\"";
constexpr char kSettings[] = "ZEB_EthEventSettings.InstanceId=\"JXV:0\"";
constexpr char kWorker[] = "ZEB_AutoStartEthernetPort.ProviderName=\"ZEBEthernetPort\"";

std::string hostName() {
  char name[256] = {};
  gethostname(name, sizeof name - 1);
  return name;
}

/// With the name of this machine where HOST stands.
std::string here(std::string text) {
  text.replace(text.find("HOST"), 4, hostName());
  return text;
}

/// One server for both schemes, on a recorded machine with one port.
class ClientTest : public testing::TestWithParam<std::string> {
 protected:
  static void SetUpTestSuite() {
    server = std::make_unique<Server>(std::vector<std::string>{"--source", ZEB_SNAPSHOTS "/one_port.json"});
  }
  static void TearDownTestSuite() { server.reset(); }

  void SetUp() override {
    if (!std::filesystem::exists(kClient)) GTEST_SKIP() << "the package sblim-wbemcli is not installed";
  }

  /// `options` stand before the object, `values` behind it.
  static Outcome run(const std::string& operation, const std::string& object,
                     const std::vector<std::string>& values = {},
                     const std::vector<std::string>& options = {}) {
    return runAs("", operation, object, values, options);
  }

  static Outcome runAs(const std::string& user, const std::string& operation, const std::string& object,
                       const std::vector<std::string>& values = {},
                       const std::vector<std::string>& options = {}) {
    const bool secure = GetParam() == "https";
    std::vector<std::string> words = {operation, "-nl"};
    if (secure) words.insert(words.end(), {"-cacert", (server->folder() / "state/server.pem").string()});
    words.insert(words.end(), options.begin(), options.end());
    words.push_back(GetParam() + "://" + user + (secure ? server->https() : server->http()) +
                    "/root/jxv:" + object);
    words.insert(words.end(), values.begin(), values.end());
    return ZebHost::run(kClient, words);
  }

  static std::unique_ptr<Server> server;
};

std::unique_ptr<Server> ClientTest::server;

INSTANTIATE_TEST_SUITE_P(Schemes, ClientTest, testing::Values("http", "https"),
                         [](const auto& scheme) { return scheme.param; });

TEST_P(ClientTest, EnumeratesInstances) {
  const Outcome outcome = run("ei", "ZEB_EthernetPort");
  EXPECT_EQ(outcome.status, 0);
  EXPECT_THAT(outcome.out, HasSubstr("-PermanentAddress=\"001b2100005e\"\n"));
  EXPECT_THAT(outcome.out, HasSubstr("-Speed=1000000000\n"));
  EXPECT_THAT(outcome.out, HasSubstr("-ActiveMaximumTransmissionUnit=9000\n"));
  EXPECT_THAT(outcome.out, HasSubstr("-FullDuplex=TRUE\n"));
}

TEST_P(ClientTest, EnumeratesNamesThroughASuperclass) {
  EXPECT_THAT(run("ein", "CIM_NetworkPort").out, HasSubstr(here(kPort)));
}

TEST_P(ClientTest, GetsWhatThePropertyListNamesAndNothingElse) {
  const Outcome outcome = run("gi", here(kPort), {"PermanentAddress"});
  EXPECT_THAT(outcome.out, HasSubstr("-PermanentAddress=\"001b2100005e\"\n"));
  EXPECT_THAT(outcome.out, Not(HasSubstr("-Speed=")));
}

TEST_P(ClientTest, AnInstanceThatIsNotThereIsNotFound) {
  std::string path = here(kPort);
  path.replace(path.rfind('1'), 1, "9");
  EXPECT_THAT(run("gi", path).err, HasSubstr("(6) CIM_ERR_NOT_FOUND"));
}

TEST_P(ClientTest, UnknownClassesAreInvalid) {
  EXPECT_THAT(run("ei", "No_Class").err, HasSubstr("(5) CIM_ERR_INVALID_CLASS"));
}

TEST_P(ClientTest, AssociatorsAreFilteredAndIncludeTheSystem) {
  const std::string system =
      "ZEB_ComputerSystem.CreationClassName=\"ZEB_ComputerSystem\",Name=\"" + hostName() + "\"";
  const Outcome names = run("ain", here(kPort));
  EXPECT_THAT(names.out, HasSubstr(system));
  EXPECT_THAT(names.out, HasSubstr("ZEB_EthernetLANEndpoint."));
  const Outcome systems = run("ai", here(kPort), {}, {"-arc", "CIM_ComputerSystem"});
  EXPECT_THAT(systems.out, HasSubstr(system));
  EXPECT_THAT(systems.out, HasSubstr("-Name=\"" + hostName() + "\"\n"));
  EXPECT_THAT(systems.out, Not(HasSubstr("ZEB_EthernetLANEndpoint.")));
  const Outcome ports = run("ain", system, {}, {"-ac", "ZEB_EthernetDevice", "-ar", "GroupComponent"});
  EXPECT_THAT(ports.out, HasSubstr(here(kPort)));
  EXPECT_THAT(run("ain", system, {}, {"-ac", "ZEB_EthernetDevice", "-ar", "PartComponent"}).out, IsEmpty());
}

TEST_P(ClientTest, ReferencesAreFiltered) {
  const Outcome names = run("rin", here(kPort), {}, {"-arc", "CIM_SystemDevice"});
  EXPECT_THAT(names.out, HasSubstr("root/jxv:ZEB_EthernetDevice."));
  EXPECT_THAT(names.out, Not(HasSubstr("ZEB_EthernetPortToLANEndpoint")));
  EXPECT_THAT(run("ri", here(kPort), {}, {"-arc", "ZEB_EthernetDevice"}).out, HasSubstr("-PartComponent="));
}

TEST_P(ClientTest, ClassesComeFromTheSchema) {
  EXPECT_THAT(run("gc", "ZEB_AutoStart").out, HasSubstr("-WorkerPollInterval="));
  EXPECT_THAT(run("gcd", "ZEB_AutoStartEthernetPort").out,
              HasSubstr("<CLASS NAME=\"ZEB_AutoStartEthernetPort\" SUPERCLASS=\"ZEB_AutoStart\">"));
  EXPECT_THAT(run("ecn", "ZEB_AutoStart").out, HasSubstr("root/jxv:ZEB_AutoStartEthernetPort\n"));
  // The client shows a class with its superclass here.
  EXPECT_THAT(run("ec", "ZEB_AutoStart").out,
              HasSubstr("root/jxv:ZEB_AutoStartEthernetPort : ZEB_AutoStart\n"));
  EXPECT_THAT(run("gc", "No_Class").err, HasSubstr("(6) CIM_ERR_NOT_FOUND"));
}

TEST_P(ClientTest, PropertiesAreSetAndGot) {
  const std::string interval = GetParam() == "https" ? "301" : "302";
  EXPECT_THAT(runAs("root:secret@", "sp", kSettings, {"PollInterval=" + interval}).err, IsEmpty());
  EXPECT_EQ(run("gp", kSettings, {"PollInterval"}).out, interval + "\n");
  EXPECT_THAT(run("gp", kSettings, {"NoSuch"}).err, HasSubstr("(12) CIM_ERR_NO_SUCH_PROPERTY"));
}

TEST_P(ClientTest, WhoMayNotWriteChangesNothing) {
  EXPECT_THAT(run("sp", kSettings, {"PollInterval=999"}).err, HasSubstr("Username/password required"));
  EXPECT_THAT(runAs("root:wrong@", "sp", kSettings, {"PollInterval=999"}).err,
              HasSubstr("Invalid username/password"));
  EXPECT_THAT(runAs("daemon:secret@", "sp", kSettings, {"PollInterval=999"}).err,
              HasSubstr("(2) CIM_ERR_ACCESS_DENIED"));
  EXPECT_NE(run("gp", kSettings, {"PollInterval"}).out, "999\n");
}

TEST_P(ClientTest, InstancesAreModified) {
  const std::string threshold = GetParam() == "https" ? "21" : "22";
  EXPECT_THAT(runAs("root:secret@", "mi", kSettings, {"FloodThreshold=" + threshold}).err, IsEmpty());
  EXPECT_EQ(run("gp", kSettings, {"FloodThreshold"}).out, threshold + "\n");
}

TEST_P(ClientTest, WhatTheProviderDoesNotOfferIsNotSupported) {
  EXPECT_THAT(runAs("root:secret@", "di", here(kPort)).err, HasSubstr("(7) CIM_ERR_NOT_SUPPORTED"));
  EXPECT_THAT(runAs("root:secret@", "dc", "ZEB_AutoStart").err, HasSubstr("(7) CIM_ERR_NOT_SUPPORTED"));
  EXPECT_THAT(runAs("root:secret@", "ci", kSettings, {"PollInterval=1"}).err,
              HasSubstr("(7) CIM_ERR_NOT_SUPPORTED"));
}

TEST_P(ClientTest, MethodsAreCalled) {
  EXPECT_THAT(runAs("root:secret@", "cm", kWorker, {"PerformWork"}).out, HasSubstr("PerformWork: 0"));
  EXPECT_THAT(runAs("root:secret@", "cmx", kWorker, {"PerformWork"}).out,
              HasSubstr("<RETURNVALUE PARAMTYPE=\"uint32\"><VALUE>0</VALUE></RETURNVALUE>"));
  EXPECT_THAT(runAs("root:secret@", "cm", kWorker, {"NoSuch"}).err,
              HasSubstr("(17) CIM_ERR_METHOD_NOT_FOUND"));
}

/// Programs and schema in the places where an installation has them.
class Installation {
 public:
  Installation() {
    for (const auto& [file, place] :
         {std::pair{ZEB_CIM, "bin/zebcim"}, {ZEB_CIM_SERVER, "libexec/zeb/zebcim-server"}}) {
      std::filesystem::create_directories((_folder / place).parent_path());
      std::filesystem::copy_file(file, _folder / place);
    }
    std::filesystem::create_directories(_folder / "share/zeb");
    std::filesystem::create_directory_symlink(ZEB_SCHEMAS, _folder / "share/zeb/schema");
  }
  Installation(const Installation&) = delete;
  Installation& operator=(const Installation&) = delete;
  ~Installation() { std::filesystem::remove_all(_folder); }

  std::string zebcim() const { return (_folder / "bin/zebcim").string(); }

 private:
  const std::filesystem::path _folder =
      std::filesystem::path(testing::TempDir()) / ("zebcim-installed-" + std::to_string(getpid()));
};

TEST(InstalledClientTest, TheInstalledProgramsFindEachOther) {
  if (!std::filesystem::exists(kClient)) GTEST_SKIP() << "the package sblim-wbemcli is not installed";
  const Installation installation;
  Server server({"--source", ZEB_SNAPSHOTS "/one_port.json"}, {}, installation.zebcim());
  const Outcome ports =
      ZebHost::run(kClient, {"ei", "-nl", "http://" + server.http() + "/root/jxv:ZEB_EthernetPort"});
  EXPECT_THAT(ports.out, HasSubstr("-PermanentAddress=\"001b2100005e\"\n"));
  EXPECT_EQ(server.stop(), 0);
}

TEST(LiveClientTest, TheMachineItselfIsServed) {
  if (!std::filesystem::exists(kClient)) GTEST_SKIP() << "the package sblim-wbemcli is not installed";
  Server server;
  const Outcome systems =
      ZebHost::run(kClient, {"ein", "http://" + server.http() + "/root/jxv:CIM_ComputerSystem"});
  EXPECT_THAT(systems.out, HasSubstr("Name=\"" + hostName() + "\""));
  const Outcome all =
      ZebHost::run(kClient, {"ei", "http://" + server.http() + "/root/jxv:ZEB_EthEventSettings"});
  EXPECT_THAT(all.out, HasSubstr("InstanceId=\"JXV:0\""));
  EXPECT_EQ(server.stop(), 0);
}

}  // namespace
}  // namespace ZebHost
