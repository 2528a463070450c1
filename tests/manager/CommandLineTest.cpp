// zebcim as a program: what it prints, where, and with which exit status.
#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "Process.h"

namespace ZebManager {
namespace {

using Json = nlohmann::ordered_json;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr char kOnePath[] = R"(root/jxv:T_Thing.Name="one \"1\"")";
constexpr char kTwoPath[] = R"(root/jxv:T_Special.Name="two")";
constexpr char kLinkPath[] =
    R"(//host/root/jxv:T_Link.One="root/jxv:T_Thing.Name=\"one \\\"1\\\"\"",Other="root/jxv:T_Special.Name=\"two\"")";

Outcome zebcim(std::vector<std::string> arguments, const std::vector<std::string>& environment = {}) {
  for (const char* word : {"--plugin", ZEB_TEST_PLUGIN, "--schema", ZEB_TEST_SCHEMA})
    arguments.emplace_back(word);
  return run(ZEB_CIM, arguments, environment);
}

/// The JSON of a command that has to succeed and to print nothing else.
Json answer(const std::vector<std::string>& arguments) {
  std::vector<std::string> words = arguments;
  words.emplace_back("--json");
  const Outcome outcome = zebcim(words);
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.err, "");
  return Json::parse(outcome.out, nullptr, false);
}

/// An error is one line on standard error, nothing on standard output, and status 1.
void expectError(const Outcome& outcome, const std::string& line) {
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err, "zebcim: " + line + "\n");
}

class Trace : public testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = testing::TempDir() + "zebcimXXXXXX";
    folder = mkdtemp(pattern.data());
    file = (folder / "trace").string();
  }
  void TearDown() override { std::filesystem::remove_all(folder); }
  std::string traced() const {
    std::ifstream in(file);
    return {std::istreambuf_iterator<char>(in), {}};
  }
  std::filesystem::path folder;
  std::string file;
};

TEST(CommandLine, InstancesAsJsonCarryNameTypeAndValueInOrder) {
  const Json list = answer({"instances", "T_Thing"});
  ASSERT_EQ(list.size(), 2U);
  const Json& one = list[0];
  std::vector<std::string> members;
  for (const auto& [key, value] : one.items()) members.push_back(key);
  EXPECT_THAT(members, ElementsAre("class", "path", "properties"));
  EXPECT_EQ(one["class"], "T_Thing");
  EXPECT_EQ(one["path"], kOnePath);
  EXPECT_EQ(list[1]["class"], "T_Special");
  const Json expected = Json::parse(R"([
    {"name": "Name", "type": "string", "value": "one \"1\""},
    {"name": "Flag", "type": "boolean", "value": true},
    {"name": "Tiny", "type": "uint8", "value": 255},
    {"name": "Small", "type": "uint16", "value": 65535},
    {"name": "Medium", "type": "uint32", "value": 4294967295},
    {"name": "Large", "type": "uint64", "value": 18446744073709551615},
    {"name": "SignedTiny", "type": "sint8", "value": -128},
    {"name": "SignedSmall", "type": "sint16", "value": -32768},
    {"name": "SignedMedium", "type": "sint32", "value": -2147483647},
    {"name": "SignedLarge", "type": "sint64", "value": -9223372036854775807},
    {"name": "Single", "type": "real32", "value": 0.5},
    {"name": "Double", "type": "real64", "value": -2.25},
    {"name": "Letter", "type": "char16", "value": "\u00e4"},
    {"name": "When", "type": "datetime", "value": "19700101000001.000000+000"},
    {"name": "Texts", "type": "string[]", "value": ["a,\"b\"", null]},
    {"name": "Numbers", "type": "uint16[]", "value": [2, 3]},
    {"name": "Absent", "type": "string", "value": null}])");
  EXPECT_EQ(one["properties"], expected);
}

TEST(CommandLine, SixtyFourBitsSurviveInTheText) {
  EXPECT_THAT(zebcim({"instances", "T_Thing", "--json"}).out, HasSubstr("\"value\": 18446744073709551615\n"));
}

TEST(CommandLine, NamesAreAnArrayOfPaths) {
  EXPECT_EQ(answer({"instances", "T_Thing", "--names"}), Json::array({kOnePath, kTwoPath}));
}

TEST(CommandLine, ASuperclassAsksEverySubclassInTurn) {
  EXPECT_EQ(answer({"instances", "T_Base", "--names"}), Json::array({kOnePath, kTwoPath}));
  EXPECT_EQ(answer({"instances", "t_special", "--names"}), Json::array({kTwoPath}));
}

TEST(CommandLine, NoInstancesAreAnEmptyArray) {
  const Json list = answer({"associators", kOnePath, "--role", "Nobody"});
  EXPECT_TRUE(list.is_array());
  EXPECT_TRUE(list.empty());
}

TEST(CommandLine, GetIsAnArrayOfOne) {
  const Json list = answer({"get", R"(t_thing.name="one \"1\"")"});
  ASSERT_EQ(list.size(), 1U);
  EXPECT_EQ(list[0]["path"], kOnePath);
}

TEST(CommandLine, ReferencesShowTheirEndsInTextForm) {
  const Json list = answer({"references", kOnePath});
  ASSERT_EQ(list.size(), 1U);
  EXPECT_EQ(list[0]["path"], kLinkPath);
  EXPECT_EQ(
      list[0]["properties"][0],
      Json({{"name", "One"}, {"type", "reference"}, {"value", R"(root/jxv:T_Thing.Name="one \"1\"")"}}));
  EXPECT_EQ(answer({"references", kOnePath, "--names"}), Json::array({kLinkPath}));
}

TEST(CommandLine, APathThatWasPrintedCanBeGivenBack) {
  EXPECT_EQ(zebcim({"associators", kLinkPath, "--names"}).out, std::string(kTwoPath) + "\n");
}

TEST_F(Trace, AssociatorsPassTheirFilterOn) {
  const Outcome outcome = zebcim({"associators", kOnePath, "--assoc-class", "T_Link", "--result-class",
                                  "T_Base", "--role", "One", "--result-role", "Other"},
                                 {"ZEB_TEST_TRACE=" + file});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_THAT(traced(), StartsWith("associators T_Link T_Base One Other\n"));
}

TEST_F(Trace, AFilterThatIsNotGivenIsNotPassed) {
  zebcim({"associators", kOnePath}, {"ZEB_TEST_TRACE=" + file});
  EXPECT_THAT(traced(), StartsWith("associators - - - -\n"));
}

TEST_F(Trace, EveryInterfaceIsCleanedUpOnce) {
  zebcim({"get", kOnePath}, {"ZEB_TEST_TRACE=" + file});
  EXPECT_EQ(traced(), "cleanup 1\ncleanup 1\ncleanup 1\ncleanup 1\n");
}

TEST_F(Trace, ModifySendsTypedValuesAndTheirNames) {
  const Outcome outcome =
      zebcim({"modify", kOnePath, "numbers=7,8", R"(Texts=a\,b,c)", "Large=18446744073709551615"},
             {"ZEB_TEST_TRACE=" + file});
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_EQ(outcome.out, "");
  // uint16[] is 144 + 8192, string[] 5632 + 8192, uint64 176.
  EXPECT_THAT(traced(), StartsWith("modify Numbers:8336,7,8 Texts:13824,a,b,c Large:176\n"));
}

TEST(CommandLine, ModifyNamesWhatItChanged) {
  EXPECT_EQ(answer({"modify", kOnePath, "Flag=false"}), Json({{"path", kOnePath}}));
}

TEST(CommandLine, InvokeShowsReturnValueAndOutputs) {
  const Json result =
      answer({"invoke", "T_Thing", "Echo", "Text=hello", "Numbers=1,2", std::string("Other=") + kTwoPath});
  EXPECT_EQ(result["returnValue"], Json({{"type", "string"}, {"value", "echo"}}));
  EXPECT_EQ(result["parameters"], Json::parse(R"([
    {"name": "Text", "type": "string", "value": "hello"},
    {"name": "Numbers", "type": "uint16[]", "value": [1, 2]},
    {"name": "HadOther", "type": "boolean", "value": true}])"));
}

TEST(CommandLine, InvokeTakesAnInstance) {
  EXPECT_EQ(answer({"invoke", kTwoPath, "CountUp"})["returnValue"]["value"], 2);
}

TEST(CommandLine, ClassesNeedNoPlugin) {
  const Outcome outcome = run(ZEB_CIM, {"classes", "--json"}, {"ZEB_PLUGIN=/nowhere.so"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.err, "");
  const Json list = Json::parse(outcome.out);
  EXPECT_EQ(list.size(), 36U);
  EXPECT_EQ(list[0]["class"], "ZEB_ComputerSystem");
  EXPECT_EQ(list[0]["superclass"], "CIM_ComputerSystem");
  EXPECT_EQ(list[0]["keys"], Json::array({"Name", "CreationClassName"}));
}

TEST(CommandLine, TextIsAlignedPlainAndExplained) {
  const Outcome outcome = zebcim({"get", kTwoPath});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_THAT(outcome.out,
              StartsWith("root/jxv:T_Special.Name=\"two\"\n  Name          two\n  Flag          TRUE\n"));
  EXPECT_THAT(outcome.out, HasSubstr("\n  Numbers       [2 (Second), 3]\n"));
  EXPECT_THAT(outcome.out, EndsWith("\n  Absent        null\n"));
  EXPECT_THAT(outcome.out, Not(HasSubstr("\x1b")));
}

TEST(CommandLine, HelpIsNoError) {
  const Outcome outcome = run(ZEB_CIM, {"--help"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_THAT(outcome.out, HasSubstr("instances"));
  EXPECT_EQ(outcome.err, "");
}

struct WrongLine {
  const char* name;
  std::vector<std::string> arguments;
};

class WrongLines : public testing::TestWithParam<WrongLine> {};

TEST_P(WrongLines, ShowUsageWithStatusTwo) {
  const Outcome outcome = zebcim(GetParam().arguments);
  EXPECT_EQ(outcome.status, 2);
  EXPECT_EQ(outcome.out, "");
  EXPECT_THAT(outcome.err, HasSubstr("Usage:"));
}

INSTANTIATE_TEST_SUITE_P(All, WrongLines,
                         testing::Values(WrongLine{"Nothing", {}}, WrongLine{"UnknownCommand", {"list"}},
                                         WrongLine{"UnknownOption", {"classes", "--xml"}},
                                         WrongLine{"NoClass", {"instances"}}, WrongLine{"NoPath", {"get"}},
                                         WrongLine{"TwoClasses", {"instances", "A", "B"}},
                                         WrongLine{"NoAssignment", {"modify", "T_Thing.Name=\"a\""}},
                                         WrongLine{"NoMethod", {"invoke", "T_Thing"}},
                                         WrongLine{"TwoCommands", {"classes", "classes"}},
                                         WrongLine{"Timeout", {"classes", "--timeout", "soon"}}),
                         [](const auto& tested) { return std::string(tested.param.name); });

struct BadRequest {
  const char* name;
  std::vector<std::string> arguments;
  const char* error;
};

class BadRequests : public testing::TestWithParam<BadRequest> {};

TEST_P(BadRequests, AreOneLineWithStatusOne) {
  expectError(zebcim(GetParam().arguments), GetParam().error);
}

INSTANTIATE_TEST_SUITE_P(
    All, BadRequests,
    testing::Values(
        BadRequest{"UnknownClass",
                   {"instances", "T_None"},
                   "unknown class 'T_None': expected one that 'zebcim classes' lists"},
        BadRequest{
            "UnknownClassInPath",
            {"get", "T_None.Name=\"a\""},
            "path 'T_None.Name=\"a\"': unknown class 'T_None': expected one that 'zebcim classes' lists"},
        BadRequest{"MissingKeys",
                   {"get", "T_Thing"},
                   "path 'T_Thing': key 'Name' is missing: T_Thing has the keys Name"},
        BadRequest{"WrongKey",
                   {"get", "T_Thing.Caption=\"a\""},
                   "path 'T_Thing.Caption=\"a\"': 'Caption' is no key of T_Thing: expected Name"},
        BadRequest{"WrongKeyType",
                   {"get", "T_Thing.Name=5"},
                   "path 'T_Thing.Name=5': key 'Name' is a string: expected its value in double quotes"},
        BadRequest{
            "Namespace",
            {"get", "root/cimv2:T_Thing.Name=\"a\""},
            "path 'root/cimv2:T_Thing.Name=\"a\"': namespace 'root/cimv2' is not served: expected root/jxv"},
        BadRequest{"NoSuchInstance",
                   {"get", "T_Thing.Name=\"three\"", "--json"},
                   "path 'root/jxv:T_Thing.Name=\"three\"': no such instance (CMPI code 6)"},
        BadRequest{
            "ProviderFailure", {"instances", "T_Numbered"}, "class 'T_Numbered': not today (CMPI code 1)"},
        BadRequest{"AssignmentWithoutValue", {"modify", kOnePath, "Flag"}, "'Flag': expected Name=Value"},
        BadRequest{"AssignmentProperty", {"modify", kOnePath, "None=1"}, "T_Thing has no property 'None'"},
        BadRequest{"AssignmentType",
                   {"modify", kOnePath, "Tiny=256"},
                   "'Tiny': expected uint8 (0 to 255), not '256'"},
        BadRequest{"AssignmentBoolean",
                   {"modify", kOnePath, "Flag=perhaps"},
                   "'Flag': expected TRUE or FALSE, not 'perhaps'"},
        BadRequest{"UnknownMethod",
                   {"invoke", "T_Thing", "Fly"},
                   "T_Thing has no method 'Fly': expected Sleep, CountUp, Alert, AlertFromThread, Echo"},
        BadRequest{
            "UnknownArgument", {"invoke", "T_Thing", "Sleep", "Hours=1"}, "Sleep takes no argument 'Hours'"},
        BadRequest{"OutputArgument",
                   {"invoke", "T_Thing", "Echo", "HadOther=true"},
                   "Echo takes no argument 'HadOther'"},
        BadRequest{"MissingSnapshot",
                   {"instances", "T_Thing", "--source", "/nowhere/snapshot.json"},
                   "cannot read the snapshot '/nowhere/snapshot.json': No such file or directory; expected a "
                   "recorded snapshot"},
        BadRequest{"SnapshotFolder",
                   {"instances", "T_Thing", "--source", "/"},
                   "cannot read the snapshot '/': expected a file, not a folder"},
        BadRequest{"CallTakesTooLong",
                   {"invoke", "T_Thing", "Sleep", "Milliseconds=30000", "--timeout", "1"},
                   "the plug-in did not answer within 1 s; --timeout allows more"}),
    [](const auto& tested) { return std::string(tested.param.name); });

TEST(CommandLine, APluginThatDoesNotLoadIsNamed) {
  const Outcome outcome = run(ZEB_CIM, {"instances", "ZEB_EthernetPort", "--plugin", "/nowhere/plugin.so"});
  expectError(
      outcome,
      "cannot load the plug-in '/nowhere/plugin.so': /nowhere/plugin.so: cannot open shared object file: "
      "No such file or directory");
}

TEST(CommandLine, AFileThatIsNoLibraryIsNamed) {
  const Outcome outcome = run(ZEB_CIM, {"instances", "ZEB_EthernetPort", "--plugin", ZEB_TEST_SCHEMA});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.out, "");
  EXPECT_THAT(outcome.err, StartsWith("zebcim: cannot load the plug-in '" ZEB_TEST_SCHEMA "': "));
  EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1);
}

TEST(CommandLine, ALibraryThatIsNoPluginIsNamed) {
  expectError(run(ZEB_CIM, {"instances", "ZEB_EthernetPort", "--plugin", "libm.so.6"}),
              "'libm.so.6' is no provider plug-in: expected it to export _Generic_Create_InstanceMI");
}

TEST(CommandLine, ARefusalShowsItsMessage) {
  expectError(zebcim({"instances", "T_Thing"}, {"ZEB_TEST_REFUSE=snapshot is\ndamaged"}),
              "the plug-in '" ZEB_TEST_PLUGIN "' does not start: snapshot is damaged");
}

TEST(CommandLine, ARefusalWithoutAMessageNamesTheFactory) {
  expectError(zebcim({"instances", "T_Thing"}, {"ZEB_TEST_REFUSE="}),
              "the plug-in '" ZEB_TEST_PLUGIN
              "' does not start: _Generic_Create_InstanceMI gave no interface for ZEBEthernetPort");
}

TEST(CommandLine, ThePluginOfTheEnvironmentIsTaken) {
  const Outcome outcome = run(ZEB_CIM, {"instances", "T_Special", "--names", "--schema", ZEB_TEST_SCHEMA},
                              {"ZEB_PLUGIN=" ZEB_TEST_PLUGIN});
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_EQ(outcome.out, std::string(kTwoPath) + "\n");
}

TEST(CommandLine, ASchemaWithAFaultIsNamedWithItsLine) {
  const std::string file = testing::TempDir() + "faulty.mof";
  std::ofstream(file) << "\nclass A : B {};";
  expectError(run(ZEB_CIM, {"classes", "--schema", file}),
              file + ":2: superclass 'B' of 'A' is not declared before it");
  std::filesystem::remove(file);
}

TEST(CommandLine, OutputThatCannotBeWrittenIsAnError) {
  const Outcome outcome = run("/bin/sh", {"-c", "exec " ZEB_CIM " classes > /dev/full"});
  expectError(outcome, "cannot write the output");
}

}  // namespace
}  // namespace ZebManager
