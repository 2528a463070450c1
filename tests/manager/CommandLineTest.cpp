// zebcim as a program: what it prints, where, and with which exit status.
#include <filesystem>

#include "TestCommand.h"
#include "posix/TemporaryFolder.h"
#include "support/Content.h"

namespace ZebManager {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class Trace : public testing::Test {
 protected:
  std::string traced() const { return ZEB::test::contentOf(file); }
  const ZEB::TemporaryFolder folder;
  const std::string file = (folder / "trace").string();
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

TEST(CommandLine, PlainJsonHasThePropertiesAsAnObject) {
  const Json one = Json::parse(zebcim({"instances", "T_Thing", "--json"}).out)[0];
  EXPECT_EQ(one["class"], "T_Thing");
  EXPECT_EQ(one["path"], kOnePath);
  EXPECT_EQ(one["properties"], Json::parse(R"({
    "Name": "one \"1\"", "Flag": true, "Tiny": 255, "Small": 65535, "Medium": 4294967295,
    "Large": 18446744073709551615, "SignedTiny": -128, "SignedSmall": -32768, "SignedMedium": -2147483647,
    "SignedLarge": -9223372036854775807, "Single": 0.5, "Double": -2.25, "Letter": "\u00e4",
    "When": "19700101000001.000000+000", "Texts": ["a,\"b\"", null], "Numbers": [2, 3], "Absent": null})"));
  EXPECT_EQ(Json::parse(zebcim({"invoke", "T_Thing", "Echo", "Numbers=1,2", "--json"}).out),
            Json::parse(R"({"returnValue": "echo", "parameters": {"Numbers": [1, 2], "HadOther": false}})"));
}

TEST(CommandLine, SixtyFourBitsSurviveInTheText) {
  EXPECT_THAT(zebcim({"instances", "T_Thing", "--json"}).out,
              HasSubstr("\"Large\": 18446744073709551615,\n"));
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
  // The plug-in accepts everything and keeps nothing.
  expectError(outcome,
              std::string("path '") + kOnePath + "': it was accepted and not kept: Numbers is [2, 3]");
  // uint16[] is 144 + 8192, string[] 5632 + 8192, uint64 176.
  EXPECT_THAT(traced(), StartsWith("modify Numbers:8336,7,8 Texts:13824,a,b,c Large:176\n"));
}

TEST(CommandLine, ModifyNamesWhatItChanged) {
  EXPECT_EQ(answer({"modify", kOnePath, "Flag=true"}), Json({{"path", kOnePath}}));
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

}  // namespace
}  // namespace ZebManager
