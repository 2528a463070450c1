// Conditions of queries: each operator on each type, how operators bind, what is refused.
#include <gmock/gmock.h>

#include "broker/SelectQuery.h"
#include "query/Condition.h"
#include "query/LikePattern.h"
#include "values/CallMemory.h"
#include "values/DateTimeText.h"
#include "values/Values.h"

namespace ZebManager {
namespace {

constexpr char kSchema[] = R"(
  [Abstract] class B_Element { [Key] string Name; };
  class B_Port : B_Element {};
  class B_FastPort : B_Port {};
  class B_Fan : B_Element {};
  [Indication, Abstract] class B_Event { string Text; };
  [Indication, Association] class B_Alert : B_Event {
    boolean Flag; boolean Unset; uint8 Tiny; uint64 Large; sint64 Low; real64 Real; char16 Letter;
    datetime When; datetime Length; uint16 Numbers[]; string Element; B_Element REF Source; B_Element REF Second; };
  [Indication] class B_SubAlert : B_Alert { uint32 Extra; };
  [Indication] class B_Other : B_Event {};)";

class Conditions : public testing::Test {
 protected:
  Conditions() : alert(make("B_SubAlert")) {
    set(*alert, "Text", dataOf(makeString(arena, "Link of eth0 is down")));
    set(*alert, "Flag", scalar(CMPI_boolean, 1));
    set(*alert, "Tiny", scalar(CMPI_uint8, 7));
    set(*alert, "Large", scalar(CMPI_uint64, ~std::uint64_t{0}));
    set(*alert, "Low", scalar(CMPI_sint64, static_cast<std::uint64_t>(-5)));
    CMPIValue real{};
    real.real64 = 2.5;
    set(*alert, "Real", dataOf(CMPI_real64, real));
    set(*alert, "Letter", scalar(CMPI_char16, 'x'));
    set(*alert, "When", dataOf(makeDateTime(arena, *parseDateTime("20240229120000.000000+000"))));
    set(*alert, "Length", dataOf(makeDateTime(arena, *parseDateTime("00000001000000.000000:000"))));
    Array* const numbers = makeArray(arena, 2, CMPI_uint16);
    numbers->body().elements[0] = scalar(CMPI_uint16, 11);
    numbers->body().elements[1] = scalar(CMPI_uint16, 12);
    set(*alert, "Numbers", dataOf(numbers));
    set(*alert, "Element",
        dataOf(makeString(arena, "//a.host:5988/root/jxv:B_FastPort.Name=\"no:class.here=\"")));
    ObjectPath* const source = makePath(arena, "root/jxv", "B_Fan");
    source->ft->addKey(source, "Name", reinterpret_cast<const CMPIValue*>("fan"), CMPI_chars);
    set(*alert, "Source", dataOf(source));
    set(*alert, "Extra", scalar(CMPI_uint32, 3));
  }

  Instance* make(const char* className) {
    return makeInstance(arena, *makePath(arena, "root/jxv", className), *repository.find(className));
  }
  static CMPIData scalar(CMPIType type, std::uint64_t bits) {
    CMPIValue value{};
    value.uint64 = bits;
    return dataOf(type, value);
  }
  static void set(Instance& instance, const char* name, const CMPIData& data) {
    ASSERT_EQ(instance.ft->setProperty(&instance, name, &data.value, data.type).rc, CMPI_RC_OK) << name;
  }
  bool holds(const std::string& condition, const char* from = "B_Alert") {
    const OwnedQuery query("SELECT * FROM " + std::string(from) + " WHERE " + condition);
    checkQuery(query.query(), repository);
    return query.matches(*alert, repository);
  }
  void expectHold(std::initializer_list<const char*> conditions) {
    for (const char* condition : conditions) EXPECT_TRUE(holds(condition)) << condition;
  }
  void expectFail(std::initializer_list<const char*> conditions) {
    for (const char* condition : conditions) EXPECT_FALSE(holds(condition)) << condition;
  }
  std::string refusal(const std::string& query) {
    try {
      checkQuery(OwnedQuery(query).query(), repository);
      return "accepted";
    } catch (const QueryError& error) {
      return error.what();
    }
  }

  ClassRepository repository = ClassRepository::fromText(kSchema, "test.mof");
  Arena arena;
  ArenaScope call{arena};
  Instance* alert;
};

TEST_F(Conditions, NumbersCompare) {
  expectHold({"Tiny = 7", "Tiny <> 8", "Tiny != 8", "Tiny < 8", "Tiny <= 7", "Tiny > 6", "Tiny >= 7",
              "7 = Tiny", "Tiny = 0x07", "Tiny = 7.0", "Tiny < 7.5", "Tiny=+7", "Low = -5", "Low < Tiny",
              "Real = 2.5", "Real = 25e-1", "Large > 18446744073709551614", "Large = 18446744073709551615",
              "Low>-6"});
  expectFail({"Tiny = 8", "Tiny <> 7", "Tiny < 7", "Tiny <= 6", "Tiny > 7", "Tiny >= 8",
              "Large = 18446744073709551614", "Low = 5", "Real > 2.5"});
}

TEST_F(Conditions, TextsCompareWithTheirCase) {
  expectHold({"Text = 'Link of eth0 is down'", "Text = \"Link of eth0 is down\"", "Text > 'Link'",
              "Text < 'Lj'", "Text <> 'link of eth0 is down'", "Letter = 'x'"});
  expectFail({"Text = 'link of eth0 is down'", "Text = ''"});
}

TEST_F(Conditions, QuotesStandWithinQuotes) {
  set(*alert, "Text", dataOf(makeString(arena, R"(it's "so" \ here)")));
  expectHold({R"(Text = 'it''s "so" \\ here')", R"(Text = "it's ""so"" \ here")",
              R"(Text = 'it\'s \"so\" \\ here')"});
}

TEST_F(Conditions, TruthsAreEqualOrNot) {
  expectHold({"Flag = TRUE", "Flag <> false", "true = Flag"});
  expectFail({"Flag = FALSE", "Flag <> TRUE"});
}

TEST_F(Conditions, DatetimesCompareAcrossZones) {
  expectHold({"When = '20240229120000.000000+000'", "When = '20240229130000.000000+060'",
              "When < '20240229120000.000001+000'", "'20240101000000.000000+000' < When",
              "Length >= '00000001000000.000000:000'"});
  expectFail({"When > '20240229120000.000000+000'", "When = Length", "When <> Length", "When < Length"});
}

TEST_F(Conditions, ElementsOfArraysCompare) {
  expectHold({"Numbers[0] = 11", "Numbers[1] = 12", "Numbers[2] IS NULL", "Numbers IS NOT NULL"});
  expectFail({"Numbers[0] = 12", "Numbers[2] = 12"});
}

TEST_F(Conditions, ReferencesCompareByTheirText) {
  expectHold({R"(Source = 'root/jxv:B_Fan.Name="fan"')", "Source LIKE '%B_Fan%'"});
}

TEST_F(Conditions, AbsentValuesAreNeitherTrueNorFalse) {
  expectHold({"Unset IS NULL", "Unset = NULL", "Flag IS NOT NULL", "Flag <> NULL", "NOT Flag IS NULL",
              "Unset = TRUE OR Flag = TRUE", "NOT (Unset = TRUE AND Flag = FALSE)"});
  expectFail({"Unset = TRUE", "Unset <> TRUE", "NOT Unset = TRUE", "NOT (Unset = TRUE)",
              "NOT NOT Unset = TRUE", "Unset = TRUE AND Flag = TRUE", "Flag IS NULL", "Flag = NULL",
              "Unset IS NOT NULL", "Unset = Unset"});
}

TEST_F(Conditions, NotBindsTighterThanAndThanOr) {
  expectHold({"Tiny = 7 OR Tiny = 8 AND Tiny = 9", "(Tiny = 7 OR Tiny = 8) AND Flag = TRUE",
              "NOT Tiny = 8 AND Flag = TRUE", "NOT NOT Tiny = 7", "Tiny = 9 AND Tiny = 8 OR Tiny = 7",
              "NOT (Tiny = 8 OR Tiny = 9)"});
  expectFail({"(Tiny = 7 OR Tiny = 8) AND Tiny = 9", "NOT Tiny = 7 OR Flag = FALSE",
              "NOT Tiny = 8 AND Flag = FALSE", "NOT (Tiny = 7 AND Flag = TRUE)"});
}

TEST_F(Conditions, LikeTakesPatterns) {
  expectHold({"Text LIKE 'Link%'", "Text LIKE '%eth_ is%'", "Text NOT LIKE 'link%'", "Text LIKE '%eth[0-3]%'",
              "NOT Text LIKE '%up'"});
  expectFail({"Text LIKE 'Link'", "Text NOT LIKE '%'", "Text LIKE '%eth[^0-3]%'"});
}

TEST(LikePattern, MatchesTheWholeText) {
  EXPECT_TRUE(isLike("", ""));
  EXPECT_TRUE(isLike("", "%"));
  EXPECT_FALSE(isLike("", "_"));
  EXPECT_FALSE(isLike("a", ""));
  EXPECT_TRUE(isLike("abcabd", "%ab_"));
  EXPECT_TRUE(isLike("abxabyabz", "ab%ab%z"));
  EXPECT_FALSE(isLike("abx", "ab%ab%"));
  EXPECT_TRUE(isLike("50%", "50[%]"));
  EXPECT_FALSE(isLike("500", "50[%]"));
  EXPECT_TRUE(isLike("a[b", "a[b"));
  EXPECT_TRUE(isLike("a-b", "a[x-]b"));
  EXPECT_TRUE(isLike("gr\xc3\xbc\xc3\x9f", "gr__"));
  EXPECT_TRUE(isLike("\xc3\xbc", "[\xc3\xa4-\xc3\xbc]"));
  EXPECT_FALSE(isLike(std::string(2000, 'a'), "%a%a%a%a%a%a%b"));
}

TEST_F(Conditions, IsaFollowsAncestry) {
  expectHold({"B_Alert ISA B_SubAlert", "B_Alert ISA B_Event", "B_Alert ISA 'B_Alert'", "Element ISA B_Port",
              "Element ISA B_FastPort", "Source ISA B_Element", "NOT Source ISA B_Port",
              "B_Alert NOT ISA B_Other"});
  expectFail({"B_Alert ISA B_Other", "Element ISA B_Fan", "Source ISA B_Port"});
  EXPECT_TRUE(holds("B_Event ISA B_Alert", "B_Event"));
  set(*alert, "Element", nullOf(CMPI_string));
  expectFail({"Element ISA B_Port", "NOT Element ISA B_Port"});
}

TEST_F(Conditions, NamesKnowNoCaseAndMayCarryTheirClass) {
  expectHold({"tiny = 7", "TINY = 7 and FLAG = true Or tiny = 1", "B_Alert.Tiny = 7", "b_subalert.extra = 3",
              "B_Event.Text LIKE 'Link%'", "tiny is not null", "Extra = 3"});
  alert = make("B_Alert");
  expectFail({"B_SubAlert.Extra = 3", "Extra = 3"});
}

TEST_F(Conditions, ClassOfTheQueryDecides) {
  EXPECT_TRUE(OwnedQuery("SELECT * FROM B_Event").matches(*alert, repository));
  EXPECT_TRUE(OwnedQuery("select Text, b_alert.Tiny from b_subalert").matches(*alert, repository));
  EXPECT_FALSE(OwnedQuery("SELECT * FROM B_Other").matches(*alert, repository));
  EXPECT_FALSE(OwnedQuery("SELECT * FROM B_Unknown").matches(*alert, repository));
}

TEST_F(Conditions, SelectedPropertiesAreKept) {
  EXPECT_THAT(OwnedQuery("SELECT Text,B_Alert.Tiny FROM B_Alert").query().properties,
              testing::ElementsAre("Text", "Tiny"));
  EXPECT_TRUE(OwnedQuery("SELECT * FROM B_Alert").query().properties.empty());
  EXPECT_TRUE(OwnedQuery("SELECT Text, B_Alert.* FROM B_Alert").query().properties.empty());
}

TEST_F(Conditions, WhatCannotBeReadIsSaid) {
  using testing::HasSubstr;
  EXPECT_THAT(refusal("SELECT * FROM B_Alert WHERE Tiny = "),
              HasSubstr("expected a property or a value, not the end"));
  EXPECT_THAT(refusal("SELECT * FROM B_Alert WHERE Tiny 7"),
              HasSubstr("character 34: expected a comparison"));
  EXPECT_THAT(refusal("SELECT * FROM B_Alert WHERE (Tiny = 7"), HasSubstr("expected AND, OR or ')'"));
  EXPECT_THAT(refusal("SELECT * FROM B_Alert WHERE Tiny = 7)"), HasSubstr("expected AND, OR or the end"));
  EXPECT_THAT(refusal("SELECT * FROM B_Alert WHERE Text = 'open"), HasSubstr("no closing quote"));
  EXPECT_THAT(refusal("SELECT * FROM B_Alert WHERE Text LIKE Tiny"), HasSubstr("a pattern in quotes"));
  EXPECT_THAT(refusal("SELECT * FROM B_Alert WHERE Tiny < NULL"), HasSubstr("expected a value"));
  EXPECT_THAT(refusal("SELECT * FROM B_Alert WHERE Tiny IS 7"), HasSubstr("NULL or NOT NULL"));
  EXPECT_THAT(refusal("SELECT * FROM B_Alert WHERE Tiny = 7x"), HasSubstr("a number"));
  EXPECT_THAT(refusal("SELECT * FROM B_Alert WHERE Numbers[-1] = 7"), HasSubstr("an index"));
  EXPECT_THAT(refusal("SELECT * FROM B_Alert WHERE Tiny = 7 Tiny = 7"), HasSubstr("AND, OR or the end"));
  EXPECT_THAT(refusal("SELECT * B_Alert"), HasSubstr("',' or FROM"));
  EXPECT_THAT(refusal("SELECT * FROM"), HasSubstr("a class"));
  EXPECT_THAT(refusal("SELECT * FROM WHERE Tiny = 7"), HasSubstr("a class"));
  EXPECT_THAT(refusal("SELECT Tiny, FROM B_Alert"), HasSubstr("a property"));
  EXPECT_THAT(refusal("DELETE FROM B_Alert"), HasSubstr("SELECT"));
  EXPECT_THAT(refusal(""), HasSubstr("SELECT"));
}

TEST_F(Conditions, WhatDoesNotFitTheClassIsSaid) {
  using testing::HasSubstr;
  const std::string where = "SELECT * FROM B_Alert WHERE ";
  EXPECT_THAT(refusal("SELECT * FROM B_Nothing"), HasSubstr("unknown class 'B_Nothing'"));
  EXPECT_THAT(refusal("SELECT * FROM B_Port"), HasSubstr("no class of indications"));
  EXPECT_THAT(refusal("SELECT Nothing FROM B_Alert"), HasSubstr("no property 'Nothing'"));
  EXPECT_THAT(refusal(where + "Nothing = 1"), HasSubstr("no property 'Nothing'"));
  EXPECT_THAT(refusal(where + "B_Port.Name = 'x'"), HasSubstr("'B_Port' is no class that"));
  EXPECT_THAT(refusal(where + "Tiny = 'seven'"), HasSubstr("a number is compared with a text"));
  EXPECT_THAT(refusal(where + "Text = 7"), HasSubstr("a text is compared with a number"));
  EXPECT_THAT(refusal(where + "When = 'yesterday'"), HasSubstr("a datetime is compared with a text"));
  EXPECT_THAT(refusal(where + "Flag > FALSE"), HasSubstr("no order"));
  EXPECT_THAT(refusal(where + "Numbers = Numbers"), HasSubstr("an array is compared"));
  EXPECT_THAT(refusal(where + "Tiny[0] = 1"), HasSubstr("no array"));
  EXPECT_THAT(refusal(where + "Tiny LIKE '7'"), HasSubstr("LIKE takes a text"));
  EXPECT_THAT(refusal(where + "Tiny ISA B_Port"), HasSubstr("no object path"));
  EXPECT_THAT(refusal(where + "Element ISA B_Nothing"), HasSubstr("unknown class"));
  EXPECT_EQ(refusal(where + "Extra = 1"), "accepted");
}

TEST_F(Conditions, DepthAndLengthAreBounded) {
  const std::string where = "SELECT * FROM B_Alert WHERE ";
  EXPECT_EQ(refusal(where + std::string(64, '(') + "Tiny = 7" + std::string(64, ')')), "accepted");
  EXPECT_THAT(refusal(where + std::string(65, '(') + "Tiny = 7" + std::string(65, ')')),
              testing::HasSubstr("at most 64"));
  std::string nots = where;
  for (int i = 0; i < 65; ++i) nots += "NOT ";
  EXPECT_THAT(refusal(nots + "Tiny = 7"), testing::HasSubstr("at most 64"));
  std::string chain = where + "Tiny=7";
  for (int i = 1; i < 256; ++i) chain += " AND Tiny=7";
  EXPECT_EQ(refusal(chain), "accepted");
  EXPECT_TRUE(OwnedQuery(chain).matches(*alert, repository));
  EXPECT_THAT(refusal(chain + " OR Tiny=7"), testing::HasSubstr("at most 256"));
  EXPECT_THAT(refusal(where + std::string(20000, ' ')), testing::HasSubstr("longer than"));
}

TEST_F(Conditions, EveryBeginningOfAQueryIsReadOrRefused) {
  const std::string query =
      "SELECT Text, * FROM B_Alert WHERE NOT (Tiny >= 0x07 AND B_Alert.Text LIKE '%[a-z]_''') OR "
      "Numbers[1] <> -1.5e+3 OR Element ISA B_Port OR Flag IS NOT NULL";
  EXPECT_EQ(refusal(query), "accepted");
  for (std::size_t length = 0; length < query.size(); ++length) {
    EXPECT_NO_THROW(refusal(query.substr(0, length)));
  }
}

TEST_F(Conditions, SelectExpressionsEvaluateThem) {
  SelectExp* const filter = makeSelectExp(arena, repository, "SELECT * FROM B_Event WHERE Tiny = 7");
  ASSERT_NE(filter, nullptr);
  CMPIStatus status{};
  EXPECT_TRUE(filter->ft->evaluate(filter, alert, &status));
  CMPISelectExp* const clone = filter->ft->clone(filter, &status);
  set(*alert, "Tiny", scalar(CMPI_uint8, 8));
  EXPECT_FALSE(filter->ft->evaluate(filter, alert, &status));
  EXPECT_FALSE(clone->ft->evaluate(clone, alert, &status));
  EXPECT_EQ(status.rc, CMPI_RC_OK);
  clone->ft->release(clone);
}

}  // namespace
}  // namespace ZebManager
