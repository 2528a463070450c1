// The reader of schemas: what it takes, and how it names what it does not take.
#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <random>

#include "posix/TemporaryFolder.h"
#include "schema/ClassRepository.h"

namespace ZebManager {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

std::string errorOf(std::string_view mof) {
  try {
    ClassRepository::fromText(mof, "test.mof");
  } catch (const SchemaError& error) {
    return error.what();
  }
  return "no error";
}

TEST(MofReader, ReadsAClassWithEverything) {
  const auto repository = ClassRepository::fromText(R"(
    // A comment, /* and one in it.
    /* Another
       over two lines. */
    [Abstract, Description("first " "second\n\"third\"")]
    class A_Base {
      [Key] string Name;
      [ValueMap {"0", "5..9", "0x10..", ".."}, Values {"Zero", "Some", "Many", "Rest"}]
      uint16 Kind = 0x10;
    };
    class A_Thing : A_Base {
      [Write, Required] sint8 Level = -128;
      string Names[] = {"a", "b"};
      boolean On = true;
      datetime When = NULL;
      char16 Letter = 'x';
      real64 Ratio = 1.5e3;
      [Static] uint32 Act([In, Description("how often")] uint8 Times, [In(false), Out] string Done[]);
    };)",
                                                    "test.mof");
  const ClassDef* thing = repository.find("a_thing");
  ASSERT_NE(thing, nullptr);
  EXPECT_EQ(thing->name, "A_Thing");
  EXPECT_EQ(thing->line, 11);
  EXPECT_EQ(thing->superclass, repository.find("A_Base"));
  EXPECT_EQ(thing->superclass->description, "first second\n\"third\"");
  ASSERT_EQ(thing->properties.size(), 8U);
  EXPECT_EQ(thing->properties[0].name, "Name");
  EXPECT_EQ(thing->properties[0].origin, thing->superclass);
  EXPECT_EQ(thing->property("LEVEL")->type, CMPI_sint8);
  EXPECT_TRUE(thing->property("Level")->writable);
  EXPECT_TRUE(thing->property("Level")->required);
  EXPECT_EQ(thing->property("Level")->defaultValues, std::vector<std::string>{"-128"});
  EXPECT_EQ(thing->property("Names")->type, CMPI_string | CMPI_ARRAY);
  EXPECT_EQ(thing->property("Names")->defaultValues, (std::vector<std::string>{"a", "b"}));
  EXPECT_EQ(thing->property("When")->defaultValues, std::nullopt);
  EXPECT_EQ(thing->property("Kind")->defaultValues, std::vector<std::string>{"0x10"});
  EXPECT_EQ(thing->property("Nothing"), nullptr);
  const MethodDef* act = thing->method("act");
  ASSERT_NE(act, nullptr);
  EXPECT_EQ(act->type, CMPI_uint32);
  EXPECT_TRUE(act->isStatic);
  ASSERT_EQ(act->parameters.size(), 2U);
  EXPECT_EQ(act->parameter("times")->type, CMPI_uint8);
  EXPECT_TRUE(act->parameter("Times")->in);
  EXPECT_FALSE(act->parameter("Done")->in);
  EXPECT_TRUE(act->parameter("Done")->out);
  EXPECT_EQ(act->parameter("Done")->type, CMPI_string | CMPI_ARRAY);
}

TEST(MofReader, ReadsValueMapsWithRanges) {
  const auto repository = ClassRepository::fromText(R"([Abstract] class A {
      [ValueMap {"0", "5..9", "0x10..", ".."}, Values {"Zero", "Some", "Many", "Rest"}] uint16 Kind;
      [ValueMap {"1"}, Values {"One"}] uint16 Few; };)",
                                                    "test.mof");
  const PropertyDef& kind = *repository.find("A")->property("Kind");
  EXPECT_EQ(kind.valueText(0), "Zero");
  EXPECT_EQ(kind.valueText(4), "Rest");
  EXPECT_EQ(kind.valueText(5), "Some");
  EXPECT_EQ(kind.valueText(9), "Some");
  EXPECT_EQ(kind.valueText(10), "Rest");
  EXPECT_EQ(kind.valueText(16), "Many");
  EXPECT_EQ(repository.find("A")->property("Few")->valueText(2), std::nullopt);
}

TEST(MofReader, AnOverrideKeepsPlaceKeyAndValueMap) {
  const auto repository = ClassRepository::fromText(R"([Abstract] class A {
      [Key, ValueMap {"1"}, Values {"One"}, Description("old")] uint16 Id; string Other; };
    class B : A { [Override("Id"), Description("new")] uint16 ID; };)",
                                                    "test.mof");
  const ClassDef& b = *repository.find("B");
  ASSERT_EQ(b.properties.size(), 2U);
  EXPECT_EQ(b.properties[0].name, "ID");
  EXPECT_TRUE(b.properties[0].key);
  EXPECT_EQ(b.properties[0].description, "new");
  EXPECT_EQ(b.properties[0].valueText(1), "One");
  EXPECT_EQ(b.properties[0].origin, repository.find("A"));
}

TEST(MofReader, AnswersAncestryWithoutRegardToCase) {
  const auto repository = ClassRepository::fromText(
      "[Abstract] class A {}; class B : A { [Key] string K; }; class C : B {}; class D : A { [Key] string K; "
      "};",
      "test.mof");
  EXPECT_TRUE(repository.isA("c", "A"));
  EXPECT_TRUE(repository.isA("C", "b"));
  EXPECT_TRUE(repository.isA("C", "C"));
  EXPECT_FALSE(repository.isA("A", "C"));
  EXPECT_FALSE(repository.isA("D", "B"));
  EXPECT_FALSE(repository.isA("X", "A"));
  EXPECT_FALSE(repository.isA("A", "X"));
  std::vector<std::string> names;
  for (const ClassDef* def : repository.instantiable(*repository.find("A"))) names.push_back(def->name);
  EXPECT_THAT(names, ElementsAre("B", "C", "D"));
}

TEST(MofReader, AnAssociationHandsDownThatItIsOne) {
  const auto repository = ClassRepository::fromText(R"(
    [Abstract] class E {};
    [Association, Abstract] class A { [Key] E REF One; [Key] E REF Other; };
    class B : A { [Override("One")] B REF One; };)",
                                                    "test.mof");
  EXPECT_TRUE(repository.find("B")->association);
  EXPECT_EQ(repository.find("B")->property("One")->referenceClass, "B");
  EXPECT_EQ(repository.find("B")->property("One")->type, CMPI_ref);
}

struct BadMof {
  const char* name;
  const char* text;
  const char* error;
};

class MofErrors : public testing::TestWithParam<BadMof> {};

TEST_P(MofErrors, NamesFileLineAndFault) {
  EXPECT_EQ(errorOf(GetParam().text), GetParam().error);
}

INSTANTIATE_TEST_SUITE_P(
    EveryKind, MofErrors,
    testing::Values(
        BadMof{"Byte", "\n@", "test.mof:2: unexpected '@'"},
        BadMof{"ControlByte", "\n\x01", "test.mof:2: unexpected byte 1"},
        BadMof{"OpenComment", "\n/* no end\n\n", "test.mof:2: a comment that begins here has no end"},
        BadMof{"OpenString", "[Description(\"abc\n\")] class A {};",
               "test.mof:1: a string has no closing quote"},
        BadMof{"OpenCharacter", "class A { char16 C = 'x; };",
               "test.mof:1: a character has no closing quote"},
        BadMof{"Escape", "[Description(\"\\q\")] class A {};", "test.mof:1: unknown escape in a string"},
        BadMof{"ZeroCharacter", "[Description(\"\\x0\")] class A {};",
               "test.mof:1: unknown escape in a string"},
        BadMof{"Keyword", "\ninstance of A {};", "test.mof:2: expected 'class', found 'instance'"},
        BadMof{"NoName", "class {};", "test.mof:1: expected the name of a class, found '{'"},
        BadMof{"NoSuperclass", "class A : ;", "test.mof:1: expected the name of the superclass, found ';'"},
        BadMof{"NoBrace", "class A\n;", "test.mof:2: expected '{' after 'A', found ';'"},
        BadMof{"NoEnd", "[Abstract] class A {", "test.mof:1: expected a type, found the end of the file"},
        BadMof{"NoSemicolon", "[Abstract] class A {}\nclass B {};",
               "test.mof:2: expected ';' after the end of 'A', found 'class'"},
        BadMof{"PropertySemicolon", "[Abstract] class A { string B\n};",
               "test.mof:2: expected ';' after property 'B', found '}'"},
        BadMof{"Type", "[Abstract] class A { strin B; };", "test.mof:1: unknown type 'strin'"},
        BadMof{"NameAfterType", "[Abstract] class A { string 5; };",
               "test.mof:1: expected a name after the type, found '5'"},
        BadMof{"Qualifier", "[Kye] class A {};", "test.mof:1: unknown qualifier 'Kye'"},
        BadMof{"QualifierTwice", "[Abstract, abstract] class A {};",
               "test.mof:1: qualifier 'Abstract' twice"},
        BadMof{"QualifierPlace", "[Key] class A {};", "test.mof:1: qualifier 'Key' does not belong here"},
        BadMof{"QualifierFlag", "[Abstract(1)] class A {};",
               "test.mof:1: qualifier 'Abstract' takes true or false, not '1'"},
        BadMof{"QualifierText", "[Description] class A {};",
               "test.mof:1: expected '(' after qualifier 'Description', found ']'"},
        BadMof{"QualifierList", "[Abstract] class A { [ValueMap {1}] uint8 B; };",
               "test.mof:1: expected a string, found '1'"},
        BadMof{"QualifierEnd", "[Abstract class A {};",
               "test.mof:1: expected ']' after the qualifiers, found 'class'"},
        BadMof{"ValueMapLength",
               "[Abstract] class A {\n[ValueMap {\"1\"}, Values {\"a\", \"b\"}] uint8 B; };",
               "test.mof:2: ValueMap and Values of 'B' differ in length"},
        BadMof{"ValuesAlone", "[Abstract] class A { [Values {\"a\"}] uint8 B; };",
               "test.mof:1: ValueMap and Values of 'B' differ in length"},
        BadMof{"DefaultRange", "[Abstract] class A { uint8 B = 256; };",
               "test.mof:1: the default of 'B' is no value of type uint8"},
        BadMof{"DefaultSign", "[Abstract] class A { sint8 B = -129; };",
               "test.mof:1: the default of 'B' is no value of type sint8"},
        BadMof{"DefaultType", "[Abstract] class A { string B = 5; };",
               "test.mof:1: the default of 'B' is no value of type string"},
        BadMof{"ClassTwice", "[Abstract] class A {};\n[Abstract] class a {};",
               "test.mof:2: class 'a' is declared twice"},
        BadMof{"Superclass", "\n\nclass A : B {};",
               "test.mof:3: superclass 'B' of 'A' is not declared before it"},
        BadMof{"OwnSuperclass", "class A : A {};",
               "test.mof:1: superclass 'A' of 'A' is not declared before it"},
        BadMof{"PropertyTwice", "[Abstract] class A { string B;\nstring b; };",
               "test.mof:2: property 'b' is declared twice"},
        BadMof{"NoOverride", "[Abstract] class A { string B; };\n[Abstract] class C : A { string B; };",
               "test.mof:2: property 'B' of the superclass lacks the qualifier Override"},
        BadMof{"OverridesNothing", "[Abstract] class A { [Override(\"B\")] string B; };",
               "test.mof:1: property 'B' overrides nothing"},
        BadMof{"OverridesOther", "[Abstract] class A { [Override(\"C\")] string B; };",
               "test.mof:1: 'B' overrides a property of another name"},
        BadMof{"OverrideType",
               "[Abstract] class A { string B; };\n[Abstract] class C : A { [Override(\"B\")] uint8 B; };",
               "test.mof:2: 'B' is uint8, but it overrides a property of type string"},
        BadMof{"NoKey", "class A { string B; };", "test.mof:1: 'A' has no key and is not abstract"},
        BadMof{"LateKey", "class A { [Key] string B; };\nclass C : A { [Key] string D; };",
               "test.mof:2: key 'D' cannot be added to the keys of the superclass"},
        BadMof{"OneReference", "[Association] class A { [Key] A REF B; };",
               "test.mof:1: association 'A' needs two references"},
        BadMof{"StrayReference", "class A { [Key] A REF B; };",
               "test.mof:1: 'A' has a reference but lacks the qualifier Association"},
        BadMof{"ReferenceArray", "[Association] class A { A REF B[]; };",
               "test.mof:1: an array of references is not supported"},
        BadMof{"ReferenceClass", "[Association]\nclass A { [Key] X REF B; [Key] A REF C; };",
               "test.mof:2: 'A.B' refers to the class 'X', which is not declared"},
        BadMof{"Parameter", "[Abstract] class A { uint8 M(string B; };",
               "test.mof:1: expected ')' after the parameters of 'M', found ';'"},
        BadMof{"ParameterQualifier", "[Abstract] class A { uint8 M([Key] string B); };",
               "test.mof:1: qualifier 'Key' does not belong here"},
        BadMof{"Pragma", "#pragma locale (\"en\")", "test.mof:1: unknown pragma 'locale'"},
        BadMof{"PragmaText", "#pragma include (5)", "test.mof:1: expected a string, found '5'"},
        BadMof{"IncludeItself", "\n#pragma include (\"test.mof\")",
               "test.mof:2: 'test.mof' is included in itself, or too deep"},
        BadMof{"IncludeMissing", "\n#pragma include (\"absent.mof\")",
               "test.mof:2: cannot read the schema file 'absent.mof': No such file or directory"}),
    [](const auto& tested) { return std::string(tested.param.name); });

class MofFiles : public testing::Test {
 protected:
  std::string write(const std::string& name, const std::string& text) const {
    std::ofstream(folder / name) << text;
    return (folder / name).string();
  }
  const ZEB::TemporaryFolder folder;
};

TEST_F(MofFiles, IncludesAreFoundBesideTheFile) {
  write("b.mof", "[Abstract] class B {};");
  const auto repository = ClassRepository::fromFile(write("a.mof", "#pragma include (\"b.mof\")"));
  EXPECT_NE(repository.find("B"), nullptr);
}

TEST_F(MofFiles, AnErrorInAnIncludedFileNamesThatFile) {
  const std::string inner = write("b.mof", "\n?");
  const std::string outer = write("a.mof", "#pragma include (\"b.mof\")");
  try {
    ClassRepository::fromFile(outer);
    FAIL() << "no error";
  } catch (const SchemaError& error) {
    EXPECT_EQ(error.what(), inner + ":2: unexpected '?'");
  }
}

TEST_F(MofFiles, AFolderAndAMissingFileAreErrors) {
  EXPECT_THROW(ClassRepository::fromFile(folder.path().string()), SchemaError);
  EXPECT_THROW(ClassRepository::fromFile((folder / "absent.mof").string()), SchemaError);
}

TEST_F(MofFiles, AnIncludeThatNeverEndsIsRefused) {
  const std::string file = write("a.mof", "#pragma include (\"/dev/zero\")");
  try {
    ClassRepository::fromFile(file);
    FAIL() << "no error";
  } catch (const SchemaError& error) {
    EXPECT_EQ(error.what(), file + ":1: cannot read the schema file '/dev/zero': not a file");
  }
}

TEST_F(MofFiles, ACircleOfIncludesEnds) {
  write("b.mof", "#pragma include (\"a.mof\")");
  const std::string outer = write("a.mof", "#pragma include (\"b.mof\")");
  try {
    ClassRepository::fromFile(outer);
    FAIL() << "no error";
  } catch (const SchemaError& error) {
    EXPECT_THAT(error.what(), HasSubstr("b.mof:1: 'a.mof' is included in itself"));
  }
}

/// Damaged text of every kind ends in a schema or in a SchemaError, never in anything else.
TEST(MofReader, SurvivesDamagedText) {
  const std::string good =
      R"([Abstract, Description("a" "b")] class A { [Key] string B = "x"; uint16 C[] = {1, 2};
    [ValueMap {"1"}, Values {"One"}] uint8 D; uint32 M([In] A REF E, boolean F); }; #pragma include ("none"))";
  std::mt19937 random(20240501);  // NOLINT(bugprone-random-generator-seed)
  const std::string alphabet = "[](){};:,=\"'\\#/*x0 \n\xff";
  int errors = 0;
  for (int round = 0; round < 5000; ++round) {
    std::string text = good.substr(0, random() % (good.size() + 1));
    for (unsigned edits = random() % 4; edits > 0 && !text.empty(); --edits) {
      text[random() % text.size()] = alphabet[random() % alphabet.size()];
    }
    try {
      ClassRepository::fromText(text, "damaged.mof");
    } catch (const SchemaError& error) {
      ++errors;
      ASSERT_THAT(error.what(), HasSubstr("damaged.mof:")) << text;
    }
  }
  EXPECT_GT(errors, 1000);
}

}  // namespace
}  // namespace ZebManager
