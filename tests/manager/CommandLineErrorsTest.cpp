// zebcim as a program: what it says of command lines, requests and plug-ins that do not work.
#include <filesystem>
#include <fstream>

#include "TestCommand.h"
#include "posix/TemporaryFolder.h"

namespace ZebManager {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

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
  std::string error;
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
                   {"get", "T_Numbered.Number=7"},
                   "no T_Numbered is 'T_Numbered.Number=7'; its keys are Number, Flag"},
        BadRequest{"Ambiguous",
                   {"get", "T_Thing"},
                   R"('T_Thing' could be any of T_Thing.Name="one \"1\"", T_Special.Name="two")"},
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
        BadRequest{"NearArgument",
                   {"invoke", "T_Thing", "Sleep", "Miliseconds=1"},
                   "Sleep takes no argument 'Miliseconds'; did you mean 'Milliseconds'?"},
        BadRequest{"NearArgumentInCapitals",
                   {"invoke", "T_Thing", "Sleep", "MILISECONDS=1"},
                   "Sleep takes no argument 'MILISECONDS'; did you mean 'Milliseconds'?"},
        BadRequest{"OutputArgument",
                   {"invoke", "T_Thing", "Echo", "HadOther=true"},
                   "Echo takes no argument 'HadOther'; did you mean 'Other'?"},
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
  const ZEB::TemporaryFolder folder;
  const std::string file = (folder / "faulty.mof").string();
  std::ofstream(file) << "\nclass A : B {};";
  expectError(run(ZEB_CIM, {"classes", "--schema", file}),
              file + ":2: superclass 'B' of 'A' is not declared before it");
}

TEST(CommandLine, OutputThatCannotBeWrittenIsAnError) {
  const Outcome outcome = run("/bin/sh", {"-c", "exec " ZEB_CIM " classes > /dev/full"});
  expectError(outcome, "cannot write the output");
}

}  // namespace
}  // namespace ZebManager
