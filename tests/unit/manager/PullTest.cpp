// Enumerations that are pulled: what the operations give, and what they refuse.
#include "PullFixture.h"
#include "cimxml/TextList.h"

namespace ZebManager {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

TEST_F(PullTest, InstancesComePieceByPiece) {
  const Pulled opened = ask("OpenEnumerateInstances", kThings + value("MaxObjectCount", "2"));
  EXPECT_THAT(opened.numbers, ElementsAre(1, 2));
  EXPECT_EQ(opened.end, "FALSE");
  const Pulled second = pull(opened.context, "2");
  EXPECT_THAT(second.numbers, ElementsAre(3, 4));
  EXPECT_EQ(second.end, "FALSE");
  EXPECT_EQ(second.context, opened.context);
  const Pulled last = pull(opened.context, "2");
  EXPECT_THAT(last.numbers, ElementsAre(5));
  EXPECT_EQ(last.end, "TRUE");
  EXPECT_EQ(last.context, "");
  EXPECT_EQ(pull(opened.context, "2").error, 21) << "what has ended is closed";
}

/// By the standard's rules for a response: the elements, then the parameters that come out, each in its
/// element.
TEST_F(PullTest, AnswersAreEncodedAsTheStandardHasIt) {
  const Pulled opened =
      ask("OpenEnumerateInstances",
          kThings + value("MaxObjectCount", "1") +
              parameter("PropertyList", "<VALUE.ARRAY><VALUE>Number</VALUE></VALUE.ARRAY>"));
  EXPECT_THAT(opened.text, HasSubstr("<IMETHODRESPONSE NAME=\"OpenEnumerateInstances\"><IRETURNVALUE>"
                                     "<VALUE.INSTANCEWITHPATH><INSTANCEPATH><NAMESPACEPATH><HOST>"));
  EXPECT_THAT(
      opened.text,
      HasSubstr("</HOST><LOCALNAMESPACEPATH><NAMESPACE NAME=\"root\"/><NAMESPACE NAME=\"jxv\"/>"
                "</LOCALNAMESPACEPATH></NAMESPACEPATH><INSTANCENAME CLASSNAME=\"M_Thing\"><KEYBINDING "
                "NAME=\"Name\"><KEYVALUE VALUETYPE=\"string\" TYPE=\"string\">thing 1</KEYVALUE>"
                "</KEYBINDING></INSTANCENAME></INSTANCEPATH><INSTANCE CLASSNAME=\"M_Thing\"><PROPERTY "
                "NAME=\"Number\" TYPE=\"uint32\"><VALUE>1</VALUE></PROPERTY></INSTANCE>"
                "</VALUE.INSTANCEWITHPATH></IRETURNVALUE>"));
  EXPECT_THAT(
      opened.text,
      HasSubstr("</IRETURNVALUE><PARAMVALUE NAME=\"EnumerationContext\" PARAMTYPE=\"string\"><VALUE>" +
                opened.context +
                "</VALUE></PARAMVALUE><PARAMVALUE NAME=\"EndOfSequence\" PARAMTYPE=\"boolean\">"
                "<VALUE>FALSE</VALUE></PARAMVALUE></IMETHODRESPONSE>"));
}

TEST_F(PullTest, WithoutACountAnOpenBringsNothing) {
  const Pulled opened = ask("OpenEnumerateInstances", kThings);
  EXPECT_THAT(opened.numbers, IsEmpty());
  EXPECT_EQ(opened.end, "FALSE");
  EXPECT_THAT(pull(opened.context, "0").numbers, IsEmpty());
  EXPECT_THAT(pull(opened.context, "4294967295").numbers, ElementsAre(1, 2, 3, 4, 5));
}

/// Nothing is fetched that is not asked for.
TEST_F(PullTest, InstancesAreFetchedWhenTheyArePulled) {
  const Pulled opened = ask("OpenEnumerateInstances", kThings + value("MaxObjectCount", "1"));
  EXPECT_EQ(things.fetched, 1U);
  pull(opened.context, "3");
  EXPECT_EQ(things.fetched, 4U);
}

TEST_F(PullTest, PathsComeInTheirOwnElement) {
  const Pulled opened = ask("OpenEnumerateInstancePaths", kThings + value("MaxObjectCount", "3"));
  EXPECT_THAT(opened.numbers, ElementsAre(1, 2, 3));
  EXPECT_THAT(opened.text, HasSubstr("<IRETURNVALUE><INSTANCEPATH><NAMESPACEPATH>"));
  const Pulled last = pull(opened.context, "3", "PullInstancePaths");
  EXPECT_THAT(last.numbers, ElementsAre(4, 5));
  EXPECT_EQ(last.end, "TRUE");
  EXPECT_EQ(things.fetched, 0U);
}

const std::string kFirst = parameter(
    "InstanceName",
    "<INSTANCENAME CLASSNAME=\"M_Thing\"><KEYBINDING NAME=\"Name\"><KEYVALUE>thing 1</KEYVALUE></KEYBINDING>"
    "</INSTANCENAME>");

TEST_F(PullTest, AssociatorsAndReferencesAreNarrowed) {
  const std::string narrowed = kFirst + parameter("ResultClass", "<CLASSNAME NAME=\"M_Base\"/>") +
                               value("Role", "One") + value("MaxObjectCount", "9");
  for (const char* const operation : {"OpenReferenceInstances", "OpenReferenceInstancePaths"}) {
    EXPECT_THAT(ask(operation, narrowed).numbers, ElementsAre(2, 3, 4, 5)) << operation;
    EXPECT_EQ(things.asked.resultClass, "M_Base");
    EXPECT_EQ(things.asked.role, "One");
  }
  for (const char* const operation : {"OpenAssociatorInstances", "OpenAssociatorInstancePaths"}) {
    EXPECT_THAT(ask(operation, narrowed + parameter("AssocClass", "<CLASSNAME NAME=\"M_Link\"/>") +
                                   value("ResultRole", "Other"))
                    .numbers,
                ElementsAre(2, 3, 4, 5))
        << operation;
    EXPECT_EQ(things.asked.associationClass, "M_Link");
    EXPECT_EQ(things.asked.resultRole, "Other");
  }
}

TEST_F(PullTest, PropertiesAreNarrowed) {
  const std::string list = parameter("PropertyList", "<VALUE.ARRAY><VALUE>colour</VALUE></VALUE.ARRAY>");
  const Pulled opened = ask("OpenEnumerateInstances", kThings + value("MaxObjectCount", "1") + list +
                                                          value("IncludeClassOrigin", "TRUE"));
  EXPECT_THAT(things.lastList, ElementsAre("colour"));
  EXPECT_THAT(opened.text, HasSubstr("CLASSORIGIN=\"M_Thing\""));
  EXPECT_THAT(opened.text, Not(HasSubstr("\"Number\"")));
  const Pulled shallow = ask("OpenEnumerateInstances",
                             kThings + value("MaxObjectCount", "1") + value("DeepInheritance", "FALSE"));
  EXPECT_THAT(shallow.text, Not(HasSubstr("\"Colour\""))) << "M_Base has none";
}

TEST_F(PullTest, InstancesThatAreNeverNamedAreKeptWhole) {
  things.quiet = 2;
  const Pulled opened =
      ask("OpenEnumerateInstances",
          kThings + value("MaxObjectCount", "4") +
              parameter("PropertyList", "<VALUE.ARRAY><VALUE>Number</VALUE></VALUE.ARRAY>"));
  EXPECT_THAT(opened.numbers, ElementsAre(1, 2, 3, 4));
  things.quiet = 0;
  const Pulled rest = pull(opened.context, "9");
  EXPECT_THAT(rest.numbers, ElementsAre(5, 101, 102)) << "as they were";
  EXPECT_EQ(rest.end, "TRUE");
  EXPECT_THAT(rest.text, HasSubstr("CLASSNAME=\"M_Quiet\"><KEYBINDING NAME=\"Name\"><KEYVALUE "
                                   "VALUETYPE=\"string\" TYPE=\"string\">thing 101</KEYVALUE>"));
  EXPECT_THAT(rest.text, Not(HasSubstr("Colour")));
  EXPECT_EQ(things.fetched, 5U);
  things.quiet = 2;
  EXPECT_THAT(ask("OpenEnumerateInstancePaths", kThings + value("MaxObjectCount", "9")).numbers,
              ElementsAre(1, 2, 3, 4, 5));
  EXPECT_THAT(
      ask("OpenQueryInstances", value("FilterQueryLanguage", "DMTF:CQL") +
                                    value("FilterQuery", "SELECT Number FROM M_Base WHERE Colour = 'red'") +
                                    value("MaxObjectCount", "9"))
          .numbers,
      ElementsAre(1, 3, 5, 101));
}

/// Namespace, class, whether with class origin, query, whether there are names of properties, a name.
TEST_F(PullTest, APlanThatNamesPropertiesItDoesNotHaveIsRefused) {
  for (const char* const listed : {"0", "1"}) {
    TextList plan;
    for (const char* const text : {"root/jxv", "", "0", "", listed, "Colour"}) plan.append(text);
    const std::string step = fetchingStep(plan.bytes(), 1, {});
    if (*listed == '1') {
      EXPECT_EQ(readFetched(performStep(step, things)).used, 0U);
    } else {
      EXPECT_THROW(performStep(step, things), TextListError);
    }
  }
}

TEST_F(PullTest, InstancesThatHaveGoneAreLeftOut) {
  const Pulled opened = ask("OpenEnumerateInstances", kThings);
  things.gone = {1, 2, 4};
  EXPECT_THAT(pull(opened.context, "2").numbers, ElementsAre(3))
      << "of four; two are looked at in vain first";
  EXPECT_THAT(pull(opened.context, "2").numbers, ElementsAre(5));
}

TEST_F(PullTest, AnErrorEndsAnEnumerationUnlessItMayGoOn) {
  things.broken = {3};
  const Pulled opened = ask("OpenEnumerateInstances", kThings);
  EXPECT_THAT(pull(opened.context, "5").numbers, ElementsAre(1, 2));
  EXPECT_EQ(pull(opened.context, "5").error, 1);
  EXPECT_EQ(pull(opened.context, "5").error, 21);
  const Pulled patient = ask("OpenEnumerateInstances", kThings + value("ContinueOnError", "TRUE"));
  EXPECT_THAT(pull(patient.context, "5").numbers, ElementsAre(1, 2));
  EXPECT_EQ(pull(patient.context, "5").error, 1);
  EXPECT_THAT(pull(patient.context, "5").numbers, ElementsAre(4, 5));
}

TEST_F(PullTest, QueriesSelectInstancesAndProperties) {
  const auto query = [](const std::string& text) {
    return value("FilterQueryLanguage", "DMTF:CQL") + value("FilterQuery", text);
  };
  const Pulled opened = ask("OpenQueryInstances", query("SELECT Number FROM M_Base WHERE Colour = 'red'") +
                                                      value("MaxObjectCount", "2"));
  EXPECT_THAT(opened.numbers, ElementsAre(1, 3));
  EXPECT_THAT(opened.text,
              HasSubstr("<IRETURNVALUE><INSTANCE CLASSNAME=\"M_Thing\"><PROPERTY NAME=\"Number\""));
  EXPECT_THAT(opened.text, Not(HasSubstr("Colour")));
  const Pulled last = pull(opened.context, "2", "PullInstances");
  EXPECT_THAT(last.numbers, ElementsAre(5));
  EXPECT_EQ(last.end, "TRUE");
  EXPECT_EQ(ask("OpenQueryInstances", query("SELECT Number FROM M_Base WHERE Age = 3")).error, 15);
  EXPECT_EQ(ask("OpenQueryInstances", query("SELECT * FROM M_None")).error, 15);
  EXPECT_EQ(ask("OpenQueryInstances", value("FilterQueryLanguage", "SQL") + value("FilterQuery", "x")).error,
            14);
  EXPECT_EQ(ask("OpenQueryInstances", value("FilterQuery", "SELECT * FROM M_Base")).error, 4);
  EXPECT_THAT(
      ask("OpenQueryInstances", query("SELECT Number FROM M_Base") + value("ReturnQueryResultClass", "TRUE"))
          .text,
      HasSubstr("<PARAMVALUE NAME=\"QueryResultClass\"><CLASS NAME=\"M_Base\"><PROPERTY NAME=\"Number\""));
}

TEST_F(PullTest, RequestsThatAreNoneAreRefused) {
  EXPECT_EQ(ask("OpenEnumerateInstances", "").error, 4);
  EXPECT_EQ(ask("OpenEnumerateInstances", parameter("ClassName", "<CLASSNAME NAME=\"None\"/>")).error, 5);
  EXPECT_EQ(ask("OpenEnumerateInstances", kThings + value("LocalOnly", "TRUE")).error, 4);
  EXPECT_EQ(ask("OpenEnumerateInstances", kThings + value("MaxObjectCount", "4294967296")).error, 4);
  EXPECT_EQ(ask("OpenEnumerateInstances", kThings + value("MaxObjectCount", "-1")).error, 4);
  EXPECT_EQ(ask("OpenEnumerateInstances", kThings + value("ContinueOnError", "perhaps")).error, 4);
  EXPECT_EQ(ask("OpenEnumerateInstances", kThings + value("FilterQuery", "x")).error, 4);
  EXPECT_EQ(ask("OpenEnumerateInstances",
                kThings + value("FilterQuery", "Number = 1") + value("FilterQueryLanguage", "DMTF:FQL"))
                .error,
            25);
  EXPECT_EQ(ask("PullInstancesWithPath", value("MaxObjectCount", "1")).error, 4);
  EXPECT_EQ(ask("PullInstancesWithPath", value("EnumerationContext", "x")).error, 4);
  EXPECT_EQ(ask("CloseEnumeration", "").error, 4);
}

TEST_F(PullTest, TimesHaveBounds) {
  EXPECT_EQ(ask("OpenEnumerateInstances", kThings + value("OperationTimeout", "0")).error, 22);
  EXPECT_EQ(ask("OpenEnumerateInstances", kThings + value("OperationTimeout", "900")).error, 0);
  EXPECT_EQ(ask("OpenEnumerateInstances", kThings + value("OperationTimeout", "901")).error, 22);
}

TEST_F(PullTest, AContextIsItsOpenersAlone) {
  const Pulled opened = ask("OpenEnumerateInstances", kThings);
  EXPECT_EQ(pull(opened.context, "1", "PullInstancesWithPath", "bob").error, 21);
  EXPECT_EQ(pull(opened.context, "1", "PullInstancesWithPath", "").error, 21);
  EXPECT_EQ(pull(opened.context, "1", "PullInstancePaths").error, 21) << "it has other elements";
  EXPECT_EQ(pull(opened.context, "1", "PullInstances").error, 21);
  const std::string context = value("EnumerationContext", opened.context);
  EXPECT_EQ(ask("PullInstancesWithPath", context + value("MaxObjectCount", "1"), "ann", "root/interop").error,
            21);
  EXPECT_EQ(ask("CloseEnumeration", context, "bob").error, 21);
  EXPECT_THAT(pull(opened.context, "1").numbers, ElementsAre(1));
}

TEST_F(PullTest, WhatIsClosedIsGone) {
  const Pulled opened = ask("OpenEnumerateInstances", kThings);
  const std::string context = value("EnumerationContext", opened.context);
  EXPECT_THAT(ask("CloseEnumeration", context).text,
              HasSubstr("<IMETHODRESPONSE NAME=\"CloseEnumeration\"></IMETHODRESPONSE>"));
  EXPECT_EQ(ask("CloseEnumeration", context).error, 21);
  EXPECT_EQ(pull(opened.context, "1").error, 21);
}

TEST_F(PullTest, APullUnderWayKeepsOthersOutAndCanBeAbandoned) {
  const Pulled opened = ask("OpenEnumerateInstances", kThings);
  const std::string context = value("EnumerationContext", opened.context);
  int second = 0;
  int closed = -1;
  during = [&] {
    second = pull(opened.context, "1").error;
    closed = ask("CloseEnumeration", context).error;
  };
  EXPECT_EQ(pull(opened.context, "1").error, 23);
  EXPECT_EQ(second, 1);
  EXPECT_EQ(closed, 0);
  EXPECT_EQ(pull(opened.context, "1").error, 21);
}

TEST_F(PullTest, PathsAreCounted) {
  const Pulled opened = ask("OpenEnumerateInstances", kThings + value("MaxObjectCount", "2"));
  EXPECT_THAT(ask("EnumerationCount", value("EnumerationContext", opened.context)).text,
              HasSubstr("<IRETURNVALUE><VALUE>5</VALUE></IRETURNVALUE>"));
  EXPECT_EQ(ask("EnumerationCount", value("EnumerationContext", "none")).error, 21);
}

class PullBoundsTest : public PullTest {
 protected:
  PullBoundsTest() : PullTest(1500, {.most = 6, .bytes = 64U << 20, .time = std::chrono::seconds(1)}) {}
};

TEST_F(PullBoundsTest, OnePullTakesAThousandAtMost) {
  const Pulled opened = ask("OpenEnumerateInstances", kThings + value("MaxObjectCount", "4294967295"));
  EXPECT_EQ(opened.numbers.size(), 1000U);
  EXPECT_EQ(pull(opened.context, "4294967295").numbers.size(), 500U);
}

/// Half for those without a name, a quarter for a user: whoever they are, there is a place for the next one.
TEST_F(PullBoundsTest, NobodyTakesWhatOthersNeed) {
  const auto openFor = [this](const std::string& user) {
    return ask("OpenEnumerateInstances", kThings, user).error;
  };
  for (int i = 0; i < 3; ++i) EXPECT_EQ(openFor(""), 0);
  EXPECT_EQ(openFor(""), 27);
  for (int i = 0; i < 2; ++i) EXPECT_EQ(openFor("alice"), 0);
  EXPECT_EQ(openFor("alice"), 27);
  EXPECT_EQ(openFor("bob"), 0);
}

TEST_F(PullBoundsTest, WhatNobodyPullsEndsInTime) {
  const Pulled opened = ask("OpenEnumerateInstances", kThings);
  const Pulled longer = ask("OpenEnumerateInstances", kThings + value("OperationTimeout", "15"));
  std::this_thread::sleep_for(std::chrono::milliseconds(1100));
  EXPECT_EQ(pull(opened.context, "1").error, 21);
  EXPECT_EQ(pull(longer.context, "1").error, 0);
}

class PullBytesTest : public PullTest {
 protected:
  PullBytesTest() : PullTest(1500, {.most = 6, .bytes = 1000, .time = std::chrono::seconds(1)}) {}
};

TEST_F(PullBytesTest, TheirMemoryIsBounded) {
  EXPECT_EQ(ask("OpenEnumerateInstances", kThings + value("MaxObjectCount", "1")).error, 27);
  EXPECT_EQ(ask("OpenQueryInstances", value("FilterQueryLanguage", "WQL") +
                                          value("FilterQuery", "SELECT * FROM M_Thing WHERE Number = 1501") +
                                          value("MaxObjectCount", "1"))
                .error,
            27);
}

/// Steps come from the server, but nothing is trusted that crosses a socket.
TEST(EnumerationStepsTest, OtherBytesAreNoSteps) {
  Many things(3);
  for (const std::string& bytes :
       {std::string("\x01"), std::string("\x01\0\0\x04open", 8), std::string("\x01xyz")}) {
    EXPECT_THROW(performStep(bytes, things), std::exception) << bytes;
  }
  EXPECT_FALSE(isStep("<CIM/>"));
}

}  // namespace
}  // namespace ZebManager
