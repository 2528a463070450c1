// The text form of object paths, both ways.
#include <random>

#include "BrokerFixture.h"
#include "values/ObjectPathText.h"

namespace ZebManager {
namespace {

using testing::HasSubstr;

class ObjectPathText : public BrokerFixture {
 protected:
  std::string again(const std::string& text) {
    return formatPath(parsePath(arena, repository, "root/jxv", text)->body());
  }
  std::string errorOf(const std::string& text) {
    try {
      parsePath(arena, repository, "root/jxv", text);
    } catch (const ManagerError& error) {
      return error.what();
    }
    return "no error";
  }
};

TEST_F(ObjectPathText, QuotesEscapesAndKeepsTheOrderOfKeys) {
  CMPIObjectPath* path = face->eft->newObjectPath(face, "root/jxv", "A_Keyed", nullptr);
  path->ft->setHostname(path, "server");
  CMPIValue value{};
  value.boolean = 1;
  path->ft->addKey(path, "Flag", &value, CMPI_boolean);
  value.uint64 = 18446744073709551615U;
  path->ft->addKey(path, "Number", &value, CMPI_uint64);
  value.sint32 = -5;
  path->ft->addKey(path, "Signed", &value, CMPI_sint32);
  value.dateTime = face->eft->newDateTimeFromBinary(face, 0, 1, nullptr);
  path->ft->addKey(path, "When", &value, CMPI_dateTime);
  EXPECT_EQ(text(path),
            "//server/root/jxv:A_Keyed.Flag=TRUE,Number=18446744073709551615,Signed=-5,"
            "When=\"00000000000000.000000:000\"");
}

TEST_F(ObjectPathText, LeavesOutWhatIsNotSet) {
  CMPIObjectPath* path = face->eft->newObjectPath(face, nullptr, nullptr, nullptr);
  EXPECT_EQ(text(path), "");
  path->ft->setClassName(path, "A_Port");
  EXPECT_EQ(text(path), "A_Port");
  path->ft->setNameSpace(path, "root/jxv");
  EXPECT_EQ(text(path), "root/jxv:A_Port");
  path->ft->setHostname(path, "server");
  EXPECT_EQ(text(path), "//server/root/jxv:A_Port");
}

TEST_F(ObjectPathText, EscapesReferencesLevelByLevel) {
  EXPECT_EQ(again(R"(A_Link.One="A_Port.Name=\"a\\\"b\"",Other="A_Port.Name=\"c\"")"),
            R"(root/jxv:A_Link.One="root/jxv:A_Port.Name=\"a\\\"b\"",Other="root/jxv:A_Port.Name=\"c\"")");
}

TEST_F(ObjectPathText, ReadsWhatItWrites) {
  for (
      const std::string text :
      {R"(root/jxv:A_Port.Name="one")", R"(//my.host:5989/root/jxv:A_Port.Name="one")",
       R"(root/jxv:A_Port.Name="")", R"(root/jxv:A_Port.Name="a,b=c.d:e/f \\ \"g\"")",
       R"(root/jxv:A_Keyed.Number=0,Flag=FALSE,Signed=-2147483648,When="20240301123456.789012+000")",
       R"(//h/root/jxv:A_Deep.Link="//h/root/jxv:A_Link.One=\"root/jxv:A_Port.Name=\\\"x\\\"\",Other=\"root/jxv:A_Port.Name=\\\"y\\\"\"",End="root/jxv:A_Port.Name=\"z\"")"}) {
    EXPECT_EQ(again(text), text);
  }
}

TEST_F(ObjectPathText, TakesNamesWithoutRegardToCaseAndShowsTheSchemas) {
  EXPECT_EQ(again(R"(ROOT/JXV:a_port.NAME="one")"), R"(root/jxv:A_Port.Name="one")");
}

TEST_F(ObjectPathText, TypesComeFromTheSchema) {
  const ObjectPath* path =
      parsePath(arena, repository, "root/jxv",
                "A_Keyed.Number=0x10,Flag=true,Signed=+7,When=\"00000001000000.000000:000\"");
  EXPECT_EQ(path->body().keys.find("Number")->data.type, CMPI_uint64);
  EXPECT_EQ(path->body().keys.find("Number")->data.value.uint64, 16U);
  EXPECT_EQ(path->body().keys.find("Number")->data.state, CMPI_keyValue);
  EXPECT_EQ(path->body().keys.find("Flag")->data.value.boolean, 1);
  EXPECT_EQ(path->body().keys.find("Signed")->data.value.sint32, 7);
  EXPECT_EQ(as<DateTime>(path->body().keys.find("When")->data.value.dateTime)->body().microseconds,
            86'400'000'000U);
}

TEST_F(ObjectPathText, ErrorsNameThePathAndWhatWasExpected) {
  EXPECT_EQ(errorOf(""), "path '': unknown class '': expected one that 'zebcim classes' lists");
  EXPECT_EQ(errorOf("A_None.Name=\"x\""),
            "path 'A_None.Name=\"x\"': unknown class 'A_None': expected one that 'zebcim classes' lists");
  EXPECT_EQ(errorOf("root/x:A_Port.Name=\"x\""),
            "path 'root/x:A_Port.Name=\"x\"': namespace 'root/x' is not served: expected root/jxv");
  EXPECT_EQ(errorOf("//host"), "path '//host': expected //host/namespace:Class.Key=value");
  EXPECT_EQ(errorOf("///A_Port"), "path '///A_Port': expected //host/namespace:Class.Key=value");
  EXPECT_EQ(errorOf("A_Port"), "path 'A_Port': key 'Name' is missing: A_Port has the keys Name");
  EXPECT_EQ(errorOf("A_Port."), "path 'A_Port.': expected Key=value at ''");
  EXPECT_EQ(errorOf("A_Port.Name"), "path 'A_Port.Name': expected Key=value at 'Name'");
  EXPECT_EQ(errorOf("A_Port.Nme=\"x\""), "path 'A_Port.Nme=\"x\"': 'Nme' is no key of A_Port: expected Name");
  EXPECT_EQ(errorOf("A_Port.Flag=TRUE"),
            "path 'A_Port.Flag=TRUE': 'Flag' is no key of A_Port: expected Name");
  EXPECT_EQ(errorOf("A_Port.Name=\"x\",name=\"y\""),
            "path 'A_Port.Name=\"x\",name=\"y\"': key 'Name' is given twice");
  EXPECT_EQ(errorOf("A_Port.Name=x"),
            "path 'A_Port.Name=x': key 'Name' is a string: expected its value in double quotes");
  EXPECT_EQ(errorOf("A_Port.Name=\"x"),
            "path 'A_Port.Name=\"x': the value of key 'Name' has no closing quote");
  EXPECT_EQ(errorOf("A_Port.Name=\"x\\"),
            "path 'A_Port.Name=\"x\\': the value of key 'Name' has no closing quote");
  EXPECT_EQ(errorOf("A_Port.Name=\"x\"y"), "path 'A_Port.Name=\"x\"y': expected ',' at 'y'");
  EXPECT_EQ(
      errorOf("A_Keyed.Number=1"),
      "path 'A_Keyed.Number=1': key 'Flag' is missing: A_Keyed has the keys Number, Flag, Signed, When");
  EXPECT_EQ(errorOf("A_Keyed.Number=-1"),
            "path 'A_Keyed.Number=-1': key 'Number': expected uint64 (0 to 18446744073709551615), not '-1'");
  EXPECT_EQ(
      errorOf("A_Keyed.Number=\"1\""),
      "path 'A_Keyed.Number=\"1\"': key 'Number': expected uint64 (0 to 18446744073709551615), not '\"1\"'");
  EXPECT_EQ(errorOf("A_Keyed.Flag=yes"),
            "path 'A_Keyed.Flag=yes': key 'Flag': expected TRUE or FALSE, not 'yes'");
  EXPECT_THAT(errorOf("A_Keyed.When=\"now\""), HasSubstr("key 'When': expected yyyymmddhhmmss.mmmmmm+utc"));
  EXPECT_EQ(errorOf("A_Alert"), "path 'A_Alert': A_Alert has no keys, so it has no instances to name");
  EXPECT_EQ(errorOf("A_Link.One=\"A_None.x=1\""),
            "path 'A_None.x=1': unknown class 'A_None': expected one that 'zebcim classes' lists");
}

TEST_F(ObjectPathText, AnErrorIsOneLine) {
  EXPECT_EQ(errorOf("A\nB"), "path 'A B': unknown class 'A B': expected one that 'zebcim classes' lists");
  EXPECT_LT(errorOf(std::string(100'000, 'x')).size(), 2000U);
}

TEST_F(ObjectPathText, ReferencesInReferencesEndSomewhere) {
  std::string text = R"(A_Port.Name="x")";
  for (int depth = 0; depth < 10; ++depth) {
    std::string escaped;
    for (const char c : text) {
      if (c == '"' || c == '\\') escaped += '\\';
      escaped += c;
    }
    text = "A_Link.One=\"" + escaped + "\",Other=\"A_Port.Name=\\\"y\\\"\"";
  }
  EXPECT_THAT(errorOf(text), HasSubstr("nested too deep"));
}

/// Damaged paths of every kind end in a path or in a ManagerError.
TEST_F(ObjectPathText, SurvivesDamagedText) {
  const std::string good =
      R"(//host/root/jxv:A_Deep.Link="A_Link.One=\"A_Port.Name=\\\"x\\\"\",Other=\"A_Port.Name=\\\"y\\\"\"",End="A_Port.Name=\"z\"")";
  std::mt19937 random(7);  // NOLINT(bugprone-random-generator-seed)
  const std::string alphabet = "\"\\=,.:/ A\xff";
  int parsed = 0;
  for (int round = 0; round < 20'000; ++round) {
    Arena own;
    std::string text = good;
    for (std::size_t edits = 1 + random() % 3; edits > 0; --edits) {
      text[random() % text.size()] = alphabet[random() % alphabet.size()];
    }
    if (random() % 4 == 0) text.resize(random() % text.size());
    try {
      const ObjectPath* path = parsePath(own, repository, "root/jxv", text);
      const std::string written = formatPath(path->body());
      ASSERT_EQ(formatPath(parsePath(own, repository, "root/jxv", written)->body()), written);
      ++parsed;
    } catch (const ManagerError& error) {
      ASSERT_EQ(std::string(error.what()).find('\n'), std::string::npos);
    }
  }
  EXPECT_GT(parsed, 100);
}

}  // namespace
}  // namespace ZebManager
