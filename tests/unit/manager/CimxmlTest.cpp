// Operations in CIM-XML: values of every type there and back, classes, methods, refusals.
#include <pugixml.hpp>

#include "CimxmlFixture.h"
#include "cimxml/Export.h"
#include "cimxml/ValueWriter.h"
#include "cimxml/XmlText.h"

namespace ZebManager {
namespace {

using testing::HasSubstr;
using testing::Not;

TEST_F(CimxmlTest, ValuesOfEveryTypeComeBackAsTheyWere) {
  const std::string instance =
      stored(property("Name", "x") + property("Small", "255") + property("Big", "-9223372036854775808") +
             property("Flag", "true") + property("Real", "0.5") + property("Letter", "\xc3\xa9") +
             property("When", "20260102030405.000006+000"));
  EXPECT_THAT(instance, HasSubstr("NAME=\"Small\" TYPE=\"uint8\"><VALUE>255</VALUE>"));
  EXPECT_THAT(instance, HasSubstr("NAME=\"Big\" TYPE=\"sint64\"><VALUE>-9223372036854775808</VALUE>"));
  EXPECT_THAT(instance, HasSubstr("NAME=\"Flag\" TYPE=\"boolean\"><VALUE>TRUE</VALUE>"));
  EXPECT_THAT(instance, HasSubstr("NAME=\"Real\" TYPE=\"real64\"><VALUE>0.5</VALUE>"));
  EXPECT_THAT(instance, HasSubstr("NAME=\"Letter\" TYPE=\"char16\"><VALUE>\xc3\xa9</VALUE>"));
  EXPECT_THAT(instance,
              HasSubstr("NAME=\"When\" TYPE=\"datetime\"><VALUE>20260102030405.000006+000</VALUE>"));
}

TEST_F(CimxmlTest, ArraysAndNullsComeBackAsTheyWere) {
  const std::string instance = stored(
      "<PROPERTY.ARRAY NAME=\"Numbers\"><VALUE.ARRAY><VALUE>1</VALUE><VALUE.NULL/></VALUE.ARRAY>"
      "</PROPERTY.ARRAY><PROPERTY.ARRAY NAME=\"Texts\"><VALUE.ARRAY/></PROPERTY.ARRAY>"
      "<PROPERTY NAME=\"Nothing\"/>");
  EXPECT_THAT(instance,
              HasSubstr("<PROPERTY.ARRAY NAME=\"Numbers\" TYPE=\"uint16\"><VALUE.ARRAY><VALUE>1</VALUE>"
                        "<VALUE.NULL/></VALUE.ARRAY></PROPERTY.ARRAY>"));
  EXPECT_THAT(instance, HasSubstr("NAME=\"Texts\" TYPE=\"string\"><VALUE.ARRAY></VALUE.ARRAY>"));
  EXPECT_THAT(instance, HasSubstr("<PROPERTY NAME=\"Nothing\" TYPE=\"string\"></PROPERTY>"));
}

TEST_F(CimxmlTest, ValuesThatDoNotFitAreInvalidParameters) {
  for (const std::string& wrong :
       {property("Small", "256"), property("Flag", "perhaps"), property("Real", "one"),
        property("Letter", "ab"), property("When", "today")}) {
    EXPECT_THAT(ask("CreateInstance",
                    parameter("NewInstance", "<INSTANCE CLASSNAME=\"T_Thing\">" + wrong + "</INSTANCE>")),
                HasSubstr("<ERROR CODE=\"4\""))
        << wrong;
  }
}

TEST_F(CimxmlTest, PropertiesAreNarrowedByListAndByClass) {
  stored(property("Name", "x") + property("Small", "1") + property("Big", "2"));
  const std::string listed =
      ask("GetInstance", parameter("InstanceName", kName) +
                             parameter("PropertyList", "<VALUE.ARRAY><VALUE>big</VALUE></VALUE.ARRAY>"));
  EXPECT_THAT(listed, HasSubstr("NAME=\"Big\""));
  EXPECT_THAT(listed, Not(HasSubstr("NAME=\"Small\"")));
  const std::string shallow =
      ask("EnumerateInstances", parameter("ClassName", "<CLASSNAME NAME=\"T_Base\"/>") +
                                    parameter("DeepInheritance", "<VALUE>FALSE</VALUE>"));
  EXPECT_THAT(shallow, HasSubstr("NAME=\"Small\""));
  EXPECT_THAT(shallow, Not(HasSubstr("NAME=\"Big\"")));
}

std::string listOf(const std::vector<std::string>& names) {
  std::string values;
  for (const std::string& name : names) values += "<VALUE>" + name + "</VALUE>";
  return parameter("PropertyList", "<VALUE.ARRAY>" + values + "</VALUE.ARRAY>");
}

/// However long a list is, a namespace is asked for each property that there can be, and once.
TEST_F(CimxmlTest, NamesThatNoClassHasAreNotAskedFor) {
  std::vector<std::string> names;
  for (int i = 0; i < 10'000; ++i)
    names.insert(names.end(), {"No" + std::to_string(i), "big", "BIG", "Words"});
  const std::string asked = listOf(names);
  ask("GetInstance", parameter("InstanceName", kName) + asked);
  EXPECT_THAT(_store.asked, testing::Optional(testing::ElementsAre("big")));
  ask("EnumerateInstances", parameter("ClassName", "<CLASSNAME NAME=\"T_Base\"/>") + asked);
  EXPECT_THAT(_store.asked, testing::Optional(testing::ElementsAre("big"))) << "a subclass has it";
  ask("Associators", parameter("ObjectName", kName) + asked);
  EXPECT_THAT(_store.asked, testing::Optional(testing::ElementsAre("big", "Words")));
  ask("GetInstance", parameter("InstanceName", kName) + listOf({"Nothing else"}));
  EXPECT_THAT(_store.asked, testing::Optional(testing::IsEmpty()));
  ask("GetInstance", parameter("InstanceName", kName));
  EXPECT_EQ(_store.asked, std::nullopt);
}

/// What is no property is for whoever modifies to refuse.
TEST_F(CimxmlTest, NamesToModifyArriveOnceEach) {
  ask("ModifyInstance",
      parameter("ModifiedInstance",
                "<VALUE.NAMEDINSTANCE>" + kName + "<INSTANCE CLASSNAME=\"T_Thing\"/></VALUE.NAMEDINSTANCE>") +
          listOf({"Small", "Unknown", "small", "Big", "UNKNOWN"}));
  EXPECT_THAT(_store.asked, testing::Optional(testing::ElementsAre("Small", "Unknown", "Big")));
}

TEST_F(CimxmlTest, OriginsAreNamedWhenAskedFor) {
  stored(property("Small", "1"));
  EXPECT_THAT(ask("GetInstance",
                  parameter("InstanceName", kName) + parameter("IncludeClassOrigin", "<VALUE>TRUE</VALUE>")),
              HasSubstr("NAME=\"Small\" TYPE=\"uint8\" CLASSORIGIN=\"T_Base\""));
}

TEST_F(CimxmlTest, RefusalsAreCimErrorsWithTheirText) {
  EXPECT_THAT(ask("DeleteInstance", parameter("InstanceName", kName)),
              HasSubstr("<ERROR CODE=\"2\" DESCRIPTION=\"not &quot;you&quot;\"/>"));
  EXPECT_THAT(ask("GetInstance", ""), HasSubstr("<ERROR CODE=\"4\""));
  EXPECT_THAT(ask("GetInstance", kThing), HasSubstr("<ERROR CODE=\"4\""));
  EXPECT_THAT(ask("OpenEnumerateInstances", ""), HasSubstr("<ERROR CODE=\"7\""));
}

TEST_F(CimxmlTest, MethodsTakeAndReturnTypedValues) {
  const std::string call =
      "<METHODCALL NAME=\"act\"><LOCALINSTANCEPATH><LOCALNAMESPACEPATH><NAMESPACE "
      "NAME=\"root\"/></LOCALNAMESPACEPATH>" +
      kName + "</LOCALINSTANCEPATH><PARAMVALUE NAME=\"Count\"><VALUE>7</VALUE></PARAMVALUE></METHODCALL>";
  const std::string response = answer(request(call), _store);
  EXPECT_THAT(
      response,
      HasSubstr("<RETURNVALUE PARAMTYPE=\"uint32\"><VALUE>3</VALUE></RETURNVALUE>"
                "<PARAMVALUE NAME=\"Said\" PARAMTYPE=\"string\"><VALUE>7 times</VALUE></PARAMVALUE>"));
}

TEST_F(CimxmlTest, InstancesInAnArrayAreMarkedAsEmbedded) {
  const std::string call =
      "<METHODCALL NAME=\"act\"><LOCALINSTANCEPATH><LOCALNAMESPACEPATH><NAMESPACE "
      "NAME=\"root\"/></LOCALNAMESPACEPATH>" +
      kName + "</LOCALINSTANCEPATH><PARAMVALUE NAME=\"Count\"><VALUE>7</VALUE></PARAMVALUE></METHODCALL>";
  const auto part = [](const std::string& name) {
    return "<VALUE>&lt;INSTANCE CLASSNAME=&quot;T_Base&quot;&gt;&lt;PROPERTY NAME=&quot;Name&quot; "
           "TYPE=&quot;string&quot;&gt;&lt;VALUE&gt;" +
           name + "&lt;/VALUE&gt;&lt;/PROPERTY&gt;&lt;/INSTANCE&gt;</VALUE>";
  };
  EXPECT_THAT(answer(request(call), _store),
              HasSubstr("<PARAMVALUE NAME=\"Parts\" PARAMTYPE=\"string\" EmbeddedObject=\"instance\">"
                        "<VALUE.ARRAY>" +
                        part("part 0") + part("part 1") + "</VALUE.ARRAY></PARAMVALUE>"));
}

TEST_F(CimxmlTest, ClassesShowTheDefaultsOfTheirProperties) {
  const std::string names =
      "<PROPERTY.ARRAY NAME=\"Words\" TYPE=\"string\"><VALUE.ARRAY><VALUE></VALUE>"
      "<VALUE>a&lt;b</VALUE></VALUE.ARRAY></PROPERTY.ARRAY>";
  const std::string bare = parameter("IncludeQualifiers", "<VALUE>FALSE</VALUE>");
  const std::string got = ask("GetClass", parameter("ClassName", "<CLASSNAME NAME=\"T_Defaults\"/>") + bare);
  EXPECT_THAT(got, HasSubstr(names));
  EXPECT_THAT(got, HasSubstr("NAME=\"Ranks\" TYPE=\"uint16\"><VALUE.ARRAY><VALUE>1</VALUE><VALUE>0x10</VALUE>"
                             "</VALUE.ARRAY></PROPERTY.ARRAY>"));
  EXPECT_THAT(got, HasSubstr("NAME=\"None\" TYPE=\"string\"><VALUE.ARRAY></VALUE.ARRAY>"));
  EXPECT_THAT(got, HasSubstr("<PROPERTY NAME=\"On\" TYPE=\"boolean\"><VALUE>true</VALUE></PROPERTY>"));
  const std::string all = ask("EnumerateClasses", parameter("DeepInheritance", "<VALUE>TRUE</VALUE>") + bare);
  EXPECT_THAT(all, HasSubstr(names));
  EXPECT_THAT(
      all, HasSubstr("<CLASS NAME=\"T_More\" SUPERCLASS=\"T_Defaults\"><PROPERTY.ARRAY NAME=\"Ranks\" "
                     "TYPE=\"uint16\"><VALUE.ARRAY><VALUE>3</VALUE></VALUE.ARRAY></PROPERTY.ARRAY></CLASS>"));
}

TEST_F(CimxmlTest, AClassIsLocalUnlessAskedFor) {
  const std::string local = ask("GetClass", kThing);
  EXPECT_THAT(local, HasSubstr("<CLASS NAME=\"T_Thing\" SUPERCLASS=\"T_Base\">"));
  EXPECT_THAT(local, Not(HasSubstr("NAME=\"Small\"")));
  EXPECT_THAT(ask("GetClass", kThing + parameter("LocalOnly", "<VALUE>FALSE</VALUE>")),
              HasSubstr("<PROPERTY NAME=\"Small\" TYPE=\"uint8\" PROPAGATED=\"true\">"));
}

TEST_F(CimxmlTest, QualifiersAreDeclared) {
  EXPECT_THAT(
      ask("GetQualifier", parameter("QualifierName", "<VALUE>key</VALUE>")),
      HasSubstr("<IRETURNVALUE><QUALIFIER.DECLARATION NAME=\"Key\" TYPE=\"boolean\" ISARRAY=\"false\" "
                "OVERRIDABLE=\"false\"><SCOPE REFERENCE=\"true\" PROPERTY=\"true\"/><VALUE>FALSE</VALUE>"
                "</QUALIFIER.DECLARATION></IRETURNVALUE>"));
  const std::string all = ask("EnumerateQualifiers", "");
  EXPECT_THAT(all, HasSubstr("<QUALIFIER.DECLARATION NAME=\"Values\" TYPE=\"string\" ISARRAY=\"true\" "
                             "TRANSLATABLE=\"true\"><SCOPE PROPERTY=\"true\" METHOD=\"true\" "
                             "PARAMETER=\"true\"/></QUALIFIER.DECLARATION>"));
  EXPECT_THAT(all, HasSubstr("<QUALIFIER.DECLARATION NAME=\"Abstract\" TYPE=\"boolean\" ISARRAY=\"false\" "
                             "TOSUBCLASS=\"false\"><SCOPE CLASS=\"true\" ASSOCIATION=\"true\" "
                             "INDICATION=\"true\"/><VALUE>FALSE</VALUE></QUALIFIER.DECLARATION>"));
  EXPECT_THAT(ask("GetQualifier", parameter("QualifierName", "<VALUE>None</VALUE>")),
              HasSubstr("<ERROR CODE=\"6\""));
  EXPECT_THAT(ask("GetQualifier", ""), HasSubstr("<ERROR CODE=\"4\""));
}

TEST_F(CimxmlTest, QualifiersComeWithClasses) {
  const auto classNamed = [&](const std::string& name) {
    return ask("GetClass", parameter("ClassName", "<CLASSNAME NAME=\"" + name + "\"/>") +
                               parameter("LocalOnly", "<VALUE>FALSE</VALUE>"));
  };
  const std::string told = classNamed("T_Told");
  EXPECT_THAT(told, HasSubstr("<CLASS NAME=\"T_Told\"><QUALIFIER NAME=\"Version\" TYPE=\"string\" "
                              "TOSUBCLASS=\"false\" TRANSLATABLE=\"true\"><VALUE>1.2</VALUE></QUALIFIER>"));
  EXPECT_THAT(told,
              HasSubstr("<PROPERTY NAME=\"Name\" TYPE=\"string\"><QUALIFIER NAME=\"Key\" TYPE=\"boolean\" "
                        "OVERRIDABLE=\"false\"><VALUE>TRUE</VALUE></QUALIFIER><QUALIFIER "
                        "NAME=\"Description\" TYPE=\"string\" TRANSLATABLE=\"true\"><VALUE>who</VALUE>"));
  EXPECT_THAT(
      told, HasSubstr("<QUALIFIER NAME=\"Units\" TYPE=\"string\" TRANSLATABLE=\"true\"><VALUE>Bits</VALUE>"));
  const std::string retold = classNamed("T_Retold");
  EXPECT_THAT(retold, HasSubstr("<CLASS NAME=\"T_Retold\" SUPERCLASS=\"T_Told\"><PROPERTY")) << "no version";
  EXPECT_THAT(retold, HasSubstr("<QUALIFIER NAME=\"Units\" TYPE=\"string\" PROPAGATED=\"true\" "
                                "TRANSLATABLE=\"true\">"));
  EXPECT_THAT(retold,
              HasSubstr("<QUALIFIER NAME=\"Override\" TYPE=\"string\" TOSUBCLASS=\"false\"><VALUE>Kind"
                        "</VALUE></QUALIFIER>"));
}

TEST_F(CimxmlTest, QualifiersComeWithInstancesThatAreAskedForThem) {
  stored(property("Name", "x"));
  const std::string bare = ask("GetInstance", parameter("InstanceName", kName));
  EXPECT_THAT(bare, Not(HasSubstr("<QUALIFIER")));
  const std::string key =
      "<PROPERTY NAME=\"Name\" TYPE=\"string\"><QUALIFIER NAME=\"Key\" TYPE=\"boolean\" "
      "OVERRIDABLE=\"false\">"
      "<VALUE>TRUE</VALUE></QUALIFIER><VALUE>x</VALUE></PROPERTY>";
  const std::string asked = parameter("IncludeQualifiers", "<VALUE>TRUE</VALUE>");
  EXPECT_THAT(ask("GetInstance", parameter("InstanceName", kName) + asked), HasSubstr(key));
  EXPECT_THAT(ask("EnumerateInstances", kThing + asked), HasSubstr(key));
  EXPECT_THAT(ask("Associators", parameter("ObjectName", kName) + asked), HasSubstr(key));
}

TEST_F(CimxmlTest, ClassesHaveAssociatorsToo) {
  const std::string associated =
      ask("AssociatorNames", parameter("ObjectName", "<CLASSNAME NAME=\"T_Thing\"/>"));
  EXPECT_THAT(associated, HasSubstr("<CLASSNAME NAME=\"T_Base\"/></CLASSPATH>"));
  EXPECT_THAT(ask("ReferenceNames", parameter("ObjectName", "<CLASSNAME NAME=\"T_Thing\"/>")),
              HasSubstr("<CLASSNAME NAME=\"T_Link\"/></CLASSPATH>"));
}

TEST(XmlTextTest, WhatXmlCannotHoldIsReplaced) {
  std::string out;
  appendEscaped(out, "<a & \"b\">\n\x01\xff\xed\xa0\x80 \xf0\x9f\x98\x80");
  EXPECT_EQ(out, "&lt;a &amp; &quot;b&quot;&gt;&#10;\xef\xbf\xbd\xef\xbf\xbd\xef\xbf\xbd \xf0\x9f\x98\x80");
}

TEST(XmlTextTest, ACharacterInMoreBytesThanItNeedsIsNone) {
  for (const char* const text : {"\x7f", "\xc2\x80", "\xe0\xa0\x80", "\xf0\x90\x80\x80"})
    EXPECT_TRUE(isXmlText(text)) << text;
  for (const char* const text : {"\xc1\xbf", "\xe0\x9f\xbf", "\xf0\x8f\xbf\xbd"})
    EXPECT_FALSE(isXmlText(text)) << text;
}

/// Parsers make one of a carriage return and a line feed that stand for themselves.
TEST(XmlTextTest, LineEndsAndTabsStayWhatTheyAre) {
  std::string out;
  appendEscaped(out, "a\r\nb\rc\td");
  EXPECT_EQ(out, "a&#13;&#10;b&#13;c&#9;d");
  pugi::xml_document document;
  ASSERT_TRUE(document.load_string(("<V>" + out + "</V>").c_str()));
  EXPECT_STREQ(document.child("V").child_value(), "a\r\nb\rc\td");
}

TEST_F(CimxmlTest, AParameterThatIsGivenTwiceIsRefused) {
  const std::string local = parameter("LocalOnly", "<VALUE>TRUE</VALUE>");
  for (const char* const again : {"LocalOnly", "localonly"}) {
    const std::string got = ask("GetClass", kThing + local + parameter(again, "<VALUE>FALSE</VALUE>"));
    EXPECT_THAT(got, HasSubstr("<ERROR CODE=\"4\"")) << again;
    EXPECT_THAT(got, HasSubstr("is given twice")) << again;
  }
}

TEST(ExportTest, AnIndicationIsOneRequest) {
  pugi::xml_document document;
  ASSERT_TRUE(document.load_string(exportMessage("9", "<INSTANCE CLASSNAME=\"A\"/>").c_str()));
  const pugi::xml_node message = document.child("CIM").child("MESSAGE");
  EXPECT_STREQ(message.attribute("ID").value(), "9");
  const pugi::xml_node call = message.child("SIMPLEEXPREQ").child("EXPMETHODCALL");
  EXPECT_STREQ(call.attribute("NAME").value(), "ExportIndication");
  EXPECT_STREQ(call.child("EXPPARAMVALUE").child("INSTANCE").attribute("CLASSNAME").value(), "A");
}

TEST(InstanceWriterTest, WritesEachInstanceAsByItselfWhateverStoodBefore) {
  const ClassRepository repository = ClassRepository::fromText(kSchema, "test");
  Arena arena;
  const ArenaScope scope(arena);
  const auto made = [&](const char* className, const std::vector<std::pair<const char*, CMPIData>>& values) {
    Instance* const instance =
        makeInstance(arena, *makePath(arena, "root/x", className), *repository.find(className));
    for (const auto& [name, data] : values) {
      EXPECT_EQ(instance->ft->setProperty(instance, name, isNull(data) ? nullptr : &data.value, data.type).rc,
                CMPI_RC_OK);
    }
    return instance;
  };
  const CMPIData text = dataOf(makeString(arena, "a<b"));
  CMPIValue yes{};
  yes.boolean = 1;
  const CMPIData flag = dataOf(CMPI_boolean, yes);
  const Instance* const instances[] = {
      made("T_Thing", {{"Name", text}, {"Nothing", text}}),
      made("T_Thing", {{"Name", text}, {"Flag", flag}, {"Nothing", nullOf(CMPI_string)}}),
      made("T_Thing", {{"NAME", text}}),
      made("T_Base", {{"Name", text}}),
      made("T_Thing", {{"Nothing", text}, {"Name", text}}),
  };
  const InstanceView view{.classOrigin = true, .qualifiers = true};
  InstanceWriter writer(view);
  for (const Instance* instance : instances) {
    std::string alone, written;
    appendInstance(alone, instance->body(), view);
    writer.append(written, instance->body());
    EXPECT_EQ(written, alone);
  }
}

}  // namespace
}  // namespace ZebManager
