// Every operation that Debian's command-line WBEM client has, over HTTP and HTTPS, on a recorded machine and
// on this one.
#include <gmock/gmock.h>
#include <unistd.h>

#include <cstdlib>
#include <functional>
#include <map>
#include <set>
#include <sstream>
#include <thread>

#include "Server.h"
#include "WbemClient.h"
#include "support/NetworkNamespace.h"

namespace ZebManager {
namespace {

using testing::HasSubstr;

/// What stands in a row for what differs between the machines: {HOST}, {ADDRESS} of the port, …
using Words = std::map<std::string, std::string>;

std::string filled(std::string text, const Words& words) {
  for (const auto& [name, value] : words) {
    const std::string mark = "{" + name + "}";
    for (std::size_t at = 0; (at = text.find(mark, at)) != std::string::npos; at += value.size())
      text.replace(at, mark.size(), value);
  }
  return text;
}

struct Asked {
  Question question;
  /// In what the client prints; nothing: it prints nothing.
  std::vector<std::string> says = {};
  /// In its complaint, and it ends with an error.
  std::string fails = {};
  std::vector<std::string> saysNot = {};
};

/// What shows that an operation does what it should.
struct Row {
  std::string operation;
  std::vector<Asked> asked;
};

const std::string kSystem = R"(SystemCreationClassName="ZEB_ComputerSystem",SystemName="{HOST}")";
const std::string kPort = R"(ZEB_EthernetPort.CreationClassName="ZEB_EthernetPort",)" + kSystem +
                          R"(,DeviceID="JXV:ZEB_EthernetPort:1")";
const std::string kEndpoint = R"(ZEB_EthernetLANEndpoint.CreationClassName="ZEB_EthernetLANEndpoint",)" +
                              kSystem + R"(,Name="JXV:ZEB_EthernetLANEndpoint:1")";
const std::string kNoPort = R"(ZEB_EthernetPort.CreationClassName="ZEB_EthernetPort",)" + kSystem +
                            R"(,DeviceID="JXV:ZEB_EthernetPort:99")";
const std::string kMachine = R"(ZEB_ComputerSystem.CreationClassName="ZEB_ComputerSystem",Name="{HOST}")";
const std::string kSettingsObject = R"(root/jxv:ZEB_EthEventSettings.InstanceId="JXV:0")";
const std::string kWorker = R"(root/jxv:ZEB_AutoStartEthernetPort.ProviderName="ZEBEthernetPort")";
const std::string kFilterKeys = kSystem + R"(,CreationClassName="CIM_IndicationFilter",Name="{FILTER}")";
const std::string kFilters = "root/interop:CIM_IndicationFilter";
const std::string kFilter = kFilters + "." + kFilterKeys;
const std::string kQuery = R"(Query="SELECT * FROM ZEB_EthernetIndication")";
const std::string kWriter = "root:secret@";

Asked makeFilter() {
  return {{.operation = "ci",
           .object = kFilter,
           .values = {kFilterKeys + R"(,QueryLanguage="WQL",)" + kQuery},
           .user = kWriter},
          {kFilter}};
}
Asked deleteFilter() {
  return {{.operation = "di", .object = kFilter, .user = kWriter}};
}

/// Of root/jxv, for reading.
Question about(const std::string& operation, const std::string& object, std::vector<std::string> values = {},
               std::vector<std::string> options = {}) {
  return {operation, "root/jxv:" + object, std::move(values), std::move(options)};
}

std::vector<Row> classRows() {
  return {
      {"gc",
       {{about("gc", "ZEB_AutoStart"), {"-WorkerPollInterval=", "-ProviderName="}},
        {about("gc", "No_Class"), {}, "(6) CIM_ERR_NOT_FOUND"}}},
      {"gcd",
       {{about("gcd", "ZEB_AutoStartEthernetPort"),
         {R"(<CLASS NAME="ZEB_AutoStartEthernetPort" SUPERCLASS="ZEB_AutoStart">)"}}}},
      {"dc",
       {{{"dc", "root/jxv:ZEB_AutoStart", {}, {}, kWriter}, {}, "(7) CIM_ERR_NOT_SUPPORTED"},
        {about("ecn", "ZEB_AutoStart"), {"root/jxv:ZEB_AutoStartEthernetPort\n"}}}},
      // The client shows a class with its superclass here.
      {"ec", {{about("ec", "ZEB_AutoStart"), {"root/jxv:ZEB_AutoStartEthernetPort : ZEB_AutoStart\n"}}}},
      {"ecn", {{about("ecn", "ZEB_AutoStart"), {"root/jxv:ZEB_AutoStartEthernetPort\n"}}}},
  };
}

std::vector<Row> instanceRows() {
  return {
      {"gi",
       {{about("gi", kPort),
         {"-NetworkAddresses=\"{ADDRESS}\"\n", "-Speed={SPEED}\n", "-FullDuplex=TRUE\n",
          "-ActiveMaximumTransmissionUnit={MTU}\n", "-OperationalStatus=2\n"}},
        {about("gi", kPort, {"Speed"}), {"-Speed={SPEED}\n"}, {}, {"-FullDuplex"}},
        {about("gi", kNoPort), {}, "(6) CIM_ERR_NOT_FOUND"}}},
      {"ei",
       {{about("ei", "ZEB_EthernetPort"),
         {kPort, "-NetworkAddresses=\"{ADDRESS}\"\n", "-ActiveMaximumTransmissionUnit={MTU}\n"}},
        {about("ei", "CIM_ComputerSystem"), {kMachine, "-Name=\"{HOST}\"\n"}},
        {about("ei", "No_Class"), {}, "(5) CIM_ERR_INVALID_CLASS"}}},
      {"ein",
       {{about("ein", "CIM_NetworkPort"), {kPort}, {}, {"LANEndpoint"}},
        {about("ein", "CIM_LANEndpoint"), {kEndpoint}}}},
      {"ci",
       {makeFilter(),
        {{"gi", kFilter}, {"-" + kQuery + "\n", "-QueryLanguage=\"WQL\"\n"}},
        {makeFilter().question, {}, "(11) CIM_ERR_ALREADY_EXISTS"},
        deleteFilter(),
        {{"ci", kSettingsObject, {"PollInterval=1"}, {}, kWriter}, {}, "(7) CIM_ERR_NOT_SUPPORTED"}}},
      {"di",
       {makeFilter(),
        deleteFilter(),
        {{"gi", kFilter}, {}, "(6) CIM_ERR_NOT_FOUND"},
        {{"di", "root/jxv:" + kPort, {}, {}, kWriter}, {}, "(7) CIM_ERR_NOT_SUPPORTED"}}},
      {"mi",
       {{{"mi", kSettingsObject, {"FloodThreshold=21"}, {}, kWriter}},
        {{"gi", kSettingsObject}, {"-FloodThreshold=21\n", "-PollInterval=200\n"}},
        {{"mi", kSettingsObject, {"FloodThreshold=22"}}, {}, "Username/password required"},
        {{"gp", kSettingsObject, {"FloodThreshold"}}, {"21\n"}}}},
  };
}

std::vector<Row> propertyAndMethodRows() {
  return {
      {"gp",
       {{about("gp", kPort, {"ActiveMaximumTransmissionUnit"}), {"{MTU}\n"}},
        {about("gp", kPort, {"NoSuch"}), {}, "(12) CIM_ERR_NO_SUCH_PROPERTY"}}},
      {"sp",
       {{{"sp", kSettingsObject, {"PollInterval=301"}, {}, kWriter}},
        {{"gp", kSettingsObject, {"PollInterval"}}, {"301\n"}},
        {{"sp", kSettingsObject, {"PollInterval=200"}, {}, kWriter}},
        {{"sp", kSettingsObject, {"PollInterval=999"}}, {}, "Username/password required"},
        {{"sp", kSettingsObject, {"PollInterval=999"}, {}, "root:wrong@"}, {}, "Invalid username/password"},
        {{"sp", kSettingsObject, {"PollInterval=999"}, {}, "daemon:secret@"},
         {},
         "(2) CIM_ERR_ACCESS_DENIED"},
        {{"gp", kSettingsObject, {"PollInterval"}}, {"200\n"}}}},
      {"cm",
       {{{"cm", kWorker, {"PerformWork"}, {}, kWriter}, {"PerformWork: 0"}},
        {{"cm", kWorker, {"NoSuch"}, {}, kWriter}, {}, "(17) CIM_ERR_METHOD_NOT_FOUND"}}},
      {"cmx",
       {{{"cmx", kWorker, {"PerformWork"}, {}, kWriter},
         {R"(<RETURNVALUE PARAMTYPE="uint32"><VALUE>0</VALUE></RETURNVALUE>)"}}}},
  };
}

std::vector<Row> associationRows() {
  const std::vector<std::string> endpoints = {"-ac", "ZEB_EthernetPortToLANEndpoint", "-arc",
                                              "CIM_LANEndpoint"};
  const std::vector<std::string> systems = {"-arc", "CIM_SystemDevice", "-ar", "PartComponent"};
  return {
      {"ai",
       {{about("ai", kPort, {}, endpoints),
         {kEndpoint, "-MACAddress=\"{PERMANENT}\"\n", "-OperationalStatus=2\n"},
         {},
         {kMachine}},
        {about("ai", kPort, {}, {"-arc", "CIM_ComputerSystem"}),
         {kMachine, "-Name=\"{HOST}\"\n"},
         {},
         {kEndpoint}}}},
      {"ain",
       {{about("ain", kPort, {}, endpoints), {kEndpoint}, {}, {kMachine}},
        {about("ain", kPort), {kEndpoint, kMachine}},
        {about("ain", kMachine, {}, {"-ac", "ZEB_EthernetDevice", "-ar", "GroupComponent"}), {kPort}},
        {about("ain", kMachine, {}, {"-ac", "ZEB_EthernetDevice", "-ar", "PartComponent"})}}},
      {"ri",
       {{about("ri", kPort, {}, systems),
         {"root/jxv:ZEB_EthernetDevice.", "-GroupComponent=", "-PartComponent="},
         {},
         {"ZEB_EthernetPortToLANEndpoint."}}}},
      {"rin",
       {{about("rin", kPort, {}, systems),
         {"root/jxv:ZEB_EthernetDevice."},
         {},
         {"ZEB_EthernetPortToLANEndpoint."}},
        {about("rin", kPort), {"root/jxv:ZEB_EthernetDevice.", "root/jxv:ZEB_EthernetPortToLANEndpoint."}}}},
  };
}

std::vector<Row> rows() {
  std::vector<Row> all;
  for (const auto& some : {classRows(), instanceRows(), propertyAndMethodRows(), associationRows()})
    all.insert(all.end(), some.begin(), some.end());
  return all;
}

std::string hostName() {
  char name[256] = {};
  gethostname(name, sizeof name - 1);
  return name;
}

void expectAnswer(const Server& server, const std::string& scheme, const Asked& asked, const Words& words) {
  Question question = asked.question;
  question.object = filled(question.object, words);
  for (std::string& value : question.values) value = filled(value, words);
  const Outcome outcome = ask(server, scheme, question);
  SCOPED_TRACE(question.operation + " " + question.object);
  if (asked.fails.empty()) {
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
  } else {
    EXPECT_NE(outcome.status, 0);
    EXPECT_THAT(outcome.err, HasSubstr(asked.fails));
  }
  EXPECT_EQ(outcome.out.empty(), asked.says.empty()) << outcome.out;
  for (const std::string& text : asked.says) EXPECT_THAT(outcome.out, HasSubstr(filled(text, words)));
  for (const std::string& text : asked.saysNot)
    EXPECT_THAT(outcome.out, testing::Not(HasSubstr(filled(text, words))));
}

class OperationsTest : public testing::TestWithParam<std::string> {
 protected:
  void SetUp() override {
    if (wbemClient().empty()) GTEST_SKIP() << "the package sblim-wbemcli is not installed";
  }

  /// All rows, on a server of their own with these arguments.
  static void expectAll(const std::vector<std::string>& arguments, Words words) {
    words["HOST"] = hostName();
    Server server(arguments);
    for (const Row& row : rows()) {
      SCOPED_TRACE(row.operation);
      words["FILTER"] = "of " + row.operation;
      for (const Asked& asked : row.asked) expectAnswer(server, GetParam(), asked, words);
    }
    EXPECT_EQ(server.stop(), 0);
  }
};

INSTANTIATE_TEST_SUITE_P(Schemes, OperationsTest, testing::Values("http", "https"),
                         [](const auto& scheme) { return scheme.param; });

TEST_P(OperationsTest, DoWhatTheyShouldOnARecordedMachine) {
  expectAll(
      {"--source", ZEB_SNAPSHOTS "/one_port.json"},
      {{"ADDRESS", "001b210000aa"}, {"PERMANENT", "001b2100005e"}, {"MTU", "9000"}, {"SPEED", "1000000000"}});
}

// A virtual port says that it has 10 Gbit/s, and has no permanent address.
TEST_P(OperationsTest, DoWhatTheyShouldOnThisMachine) {
  bool allowed = false;
  std::thread([&] {
    allowed = ZEB::test::enterNewNetworkNamespace();
    if (!allowed) return;
    ASSERT_TRUE(ZEB::test::setLoopback(true));
    ASSERT_EQ(std::system("ip link add eth7 index 7 address 02:00:5e:00:53:07 mtu 1400 type veth "
                          "peer name eth8 index 8 address 02:00:5e:00:53:08 && "
                          "ip link set eth7 up && ip link set eth8 up"),
              0);
    expectAll({"--include-virtual"},
              {{"ADDRESS", "02005e005307"}, {"PERMANENT", ""}, {"MTU", "1400"}, {"SPEED", "10000000000"}});
  }).join();
  if (!allowed) GTEST_SKIP() << "not allowed to make a network namespace";
}

TEST(ClientOperationsTest, AllHaveARow) {
  if (wbemClient().empty()) GTEST_SKIP() << "the package sblim-wbemcli is not installed";
  // "usage: wbemcli gc|gcd|…" and its options.
  const Outcome outcome = run(wbemClient(), {});
  std::istringstream usage(outcome.out + outcome.err);
  std::string word, operations;
  usage >> word >> word >> operations;
  std::istringstream names(operations);
  std::multiset<std::string> has, tested;
  for (std::string name; std::getline(names, name, '|');) has.insert(name);
  for (const Row& row : rows()) tested.insert(row.operation);
  EXPECT_EQ(tested, has);
  EXPECT_EQ(has.size(), 19U);
}

}  // namespace
}  // namespace ZebManager
