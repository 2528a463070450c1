#include <gmock/gmock.h>

#include <pugixml.hpp>

#include "cimxml/Answer.h"
#include "cimxml/Export.h"
#include "cimxml/XmlText.h"
#include "values/CallMemory.h"
#include "values/Values.h"

namespace ZebManager {
namespace {

using testing::HasSubstr;
using testing::Not;

constexpr char kSchema[] = R"(
  [Description("A <thing>")] class T_Base { [Key] string Name; uint8 Small; };
  class T_Thing : T_Base { sint64 Big; boolean Flag; real64 Real; char16 Letter; datetime When; string Texts[];
    uint16 Numbers[]; string Nothing; uint32 Act([In] uint16 Count, [Out] string Said); };
  class T_Defaults { [Key] string Name; string Words[] = {"", "a<b"}; uint16 Ranks[] = {1, 0x10}; string None[] = {};
    boolean On = true; };
  class T_More : T_Defaults { [Override("Ranks")] uint16 Ranks[] = {3}; };
  [Association] class T_Link { [Key] T_Base REF One; [Key] T_Base REF Other; };)";

/// Keeps the instance that it was given, and gives it back.
class Store : public Namespace {
 public:
  const ClassRepository& repository() const override { return _repository; }
  Reply enumerateInstances(std::string_view, PropertyList) override { return stored(); }
  Reply enumerateInstanceNames(std::string_view) override { return refused(); }
  Reply getInstance(const CMPIObjectPath&, PropertyList) override { return stored(); }
  Reply createInstance(const CMPIObjectPath&, const CMPIInstance& instance) override {
    _instance = makeHandle<Instance>(_arena, copyInstance(_arena, as<Instance>(&instance)->body()));
    return {};
  }
  Reply modifyInstance(const CMPIObjectPath&, const CMPIInstance&, PropertyList) override {
    return refused();
  }
  Reply deleteInstance(const CMPIObjectPath&) override { return refused(); }
  Reply associators(const CMPIObjectPath&, const AssociationFilter&, PropertyList) override {
    return stored();
  }
  Reply associatorNames(const CMPIObjectPath&, const AssociationFilter&) override { return refused(); }
  Reply references(const CMPIObjectPath&, const AssociationFilter&, PropertyList) override {
    return refused();
  }
  Reply referenceNames(const CMPIObjectPath&, const AssociationFilter&) override { return refused(); }
  Reply invokeMethod(const CMPIObjectPath&, const char*, const CMPIArgs& in, CMPIArgs& out) override {
    const CMPIData count = in.ft->getArg(&in, "Count", nullptr);
    EXPECT_EQ(count.type, CMPI_uint16);
    const CMPIData said = dataOf(makeString(_arena, std::to_string(count.value.uint16) + " times"));
    out.ft->addArg(&out, "Said", &said.value, said.type);
    addParts(out);
    Reply reply;
    CMPIValue value{};
    value.uint32 = 3;
    reply.result()->body().append(dataOf(CMPI_uint32, value));
    return reply;
  }

 private:
  /// Two instances in an array.
  void addParts(CMPIArgs& out) {
    Array& parts = *makeArray(_arena, 2, CMPI_instance);
    for (CMPICount i = 0; i < 2; ++i) {
      Instance& part =
          *makeInstance(_arena, *makePath(_arena, "root", "T_Base"), *_repository.find("T_Base"));
      const CMPIData name = dataOf(makeString(_arena, "part " + std::to_string(i)));
      part.ft->setProperty(&part, "Name", &name.value, name.type);
      parts.body().elements[i] = dataOf(&part);
    }
    const CMPIData data = dataOf(&parts);
    out.ft->addArg(&out, "Parts", &data.value, data.type);
  }

  Reply stored() {
    Reply reply;
    if (_instance) reply.result()->body().append(dataOf(_instance));
    return reply;
  }
  static Reply refused() {
    Reply reply;
    reply.code = CMPI_RC_ERR_ACCESS_DENIED;
    reply.message = "not \"you\"";
    return reply;
  }

  ClassRepository _repository = ClassRepository::fromText(kSchema, "test.mof");
  Arena _arena;
  Instance* _instance = nullptr;
};

std::string request(const std::string& call) {
  return "<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\"><MESSAGE ID=\"a&amp;1\" "
         "PROTOCOLVERSION=\"1.0\"><SIMPLEREQ>" +
         call + "</SIMPLEREQ></MESSAGE></CIM>";
}

std::string intrinsic(const std::string& name, const std::string& parameters) {
  return request(
      "<IMETHODCALL NAME=\"" + name +
      "\"><LOCALNAMESPACEPATH><NAMESPACE NAME=\"root\"/><NAMESPACE NAME=\"jxv\"/></LOCALNAMESPACEPATH>" +
      parameters + "</IMETHODCALL>");
}

std::string parameter(const std::string& name, const std::string& value) {
  return "<IPARAMVALUE NAME=\"" + name + "\">" + value + "</IPARAMVALUE>";
}

std::string property(const std::string& name, const std::string& value) {
  return "<PROPERTY NAME=\"" + name + "\"><VALUE>" + value + "</VALUE></PROPERTY>";
}

const std::string kName =
    "<INSTANCENAME CLASSNAME=\"T_Thing\"><KEYBINDING "
    "NAME=\"Name\"><KEYVALUE>x</KEYVALUE></KEYBINDING></INSTANCENAME>";
const std::string kThing = parameter("ClassName", "<CLASSNAME NAME=\"T_Thing\"/>");

class CimxmlTest : public testing::Test {
 protected:
  std::string ask(const std::string& operation, const std::string& parameters) {
    return answer(intrinsic(operation, parameters), _store);
  }
  /// The instance as it comes back when these elements were stored.
  std::string stored(const std::string& properties) {
    const std::string created =
        ask("CreateInstance",
            parameter("NewInstance", "<INSTANCE CLASSNAME=\"T_Thing\">" + properties + "</INSTANCE>"));
    EXPECT_THAT(created, HasSubstr("<INSTANCENAME CLASSNAME=\"T_Thing\">"));
    return ask("GetInstance", parameter("InstanceName", kName));
  }

  Store _store;
};

TEST_F(CimxmlTest, AMessageSaysWhatItAsksFor) {
  const CimMessage message = readMessage(intrinsic("DeleteInstance", ""));
  EXPECT_EQ(message.id, "a&1");
  EXPECT_EQ(message.operation, "DeleteInstance");
  EXPECT_EQ(message.nameSpace, "root/jxv");
  EXPECT_TRUE(message.intrinsic);
  EXPECT_TRUE(message.writes);
  EXPECT_FALSE(readMessage(intrinsic("GetInstance", "")).writes);
}

TEST_F(CimxmlTest, AWritingOperationIsOneInWhateverCaseItIsWritten) {
  for (const char* const name : {"CreateInstance", "createinstance", "MODIFYINSTANCE", "deleteInstance",
                                 "setproperty", "createclass", "setQUALIFIER"}) {
    EXPECT_TRUE(readMessage(intrinsic(name, "")).writes) << name;
  }
  for (const char* const name : {"getinstance", "ENUMERATEINSTANCES", "execquery"}) {
    EXPECT_FALSE(readMessage(intrinsic(name, "")).writes) << name;
  }
}

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

TEST_F(CimxmlTest, ClassesHaveAssociatorsToo) {
  const std::string associated =
      ask("AssociatorNames", parameter("ObjectName", "<CLASSNAME NAME=\"T_Thing\"/>"));
  EXPECT_THAT(associated, HasSubstr("<CLASSNAME NAME=\"T_Base\"/></CLASSPATH>"));
  EXPECT_THAT(ask("ReferenceNames", parameter("ObjectName", "<CLASSNAME NAME=\"T_Thing\"/>")),
              HasSubstr("<CLASSNAME NAME=\"T_Link\"/></CLASSPATH>"));
}

TEST_F(CimxmlTest, VersionsThatAreNotKnownAreNotImplemented) {
  const std::string good = intrinsic("GetClass", kThing);
  const auto with = [&](const std::string& from, const std::string& to) {
    std::string changed = good;
    return changed.replace(changed.find(from), from.size(), to);
  };
  const auto header = [](const std::string& body) -> std::string {
    try {
      readMessage(body);
    } catch (const MessageError& error) {
      return std::to_string(error.status) + " " + error.header;
    }
    return "";
  };
  EXPECT_EQ(header(with("CIMVERSION=\"2.0\"", "CIMVERSION=\"3.0\"")), "501 unsupported-cim-version");
  EXPECT_EQ(header(with("DTDVERSION=\"2.0\"", "DTDVERSION=\"1.0\"")), "501 unsupported-dtd-version");
  EXPECT_EQ(header(with("PROTOCOLVERSION=\"1.0\"", "PROTOCOLVERSION=\"2.0\"")),
            "501 unsupported-protocol-version");
  EXPECT_EQ(header(with("SIMPLEREQ", "MULTIREQ")), "400 request-not-well-formed");
  EXPECT_EQ(header("<?xml version=\"1.0\" encoding=\"iso-8859-1\"?>" + good), "400 request-not-well-formed");
}

/// What a body is refused with; empty when it is not.
std::string refusalOf(const std::string& body) {
  try {
    readMessage(body);
    return "";
  } catch (const MessageError& error) {
    return std::to_string(error.status) + " " + error.header;
  }
}

TEST_F(CimxmlTest, ElementsAndAttributesAreBounded) {
  std::string elements = "<CIM>";
  std::string attributes = "<CIM";
  for (int i = 0; i < 100'001; ++i) {
    elements += "<A/>";
    attributes += " a=\"\"";
  }
  EXPECT_EQ(refusalOf(elements + "</CIM>"), "413 ");
  EXPECT_EQ(refusalOf(attributes + "/>"), "413 ");
}

TEST_F(CimxmlTest, ReferencesToCharactersAndToXmlsOwnEntitiesAreRead) {
  const std::string instance = stored(property("Name", "x") + property("Letter", "&#233;") +
                                      "<PROPERTY.ARRAY NAME=\"Texts\"><VALUE.ARRAY>"
                                      "<VALUE>&#x41;&lt;&amp;&gt;&quot;&apos;&#x1F600;</VALUE>"
                                      "<VALUE><![CDATA[&foo; & <b>]]></VALUE></VALUE.ARRAY></PROPERTY.ARRAY>"
                                      "<!-- &foo; & -->");
  EXPECT_THAT(instance, HasSubstr("NAME=\"Letter\" TYPE=\"char16\"><VALUE>\xc3\xa9</VALUE>"));
  EXPECT_THAT(instance, HasSubstr("<VALUE>A&lt;&amp;&gt;&quot;'\xf0\x9f\x98\x80</VALUE>"));
  EXPECT_THAT(instance, HasSubstr("<VALUE>&amp;foo; &amp; &lt;b&gt;</VALUE>"));
}

TEST_F(CimxmlTest, OtherReferencesAreNotWellFormed) {
  for (const char* const text :
       {"&foo;",  "&",        "& ",       "&amp",     "&;",         "&#;",
        "&#x;",   "&#xg1;",   "&#X41;",   "&#-1;",    "&#0;",       "&#1;",
        "&#x1f;", "&#xd800;", "&#xdfff;", "&#xfffe;", "&#x110000;", "&#99999999999999999999;",
        "&AMP;",  "&amp ;"}) {
    EXPECT_EQ(refusalOf(intrinsic("GetInstance", parameter("InstanceName", text))),
              "400 request-not-well-formed")
        << text;
    EXPECT_EQ(refusalOf(intrinsic(text, "")), "400 request-not-well-formed") << text;
  }
  EXPECT_EQ(refusalOf(intrinsic("Get<Instance", "")), "400 request-not-well-formed");
}

TEST_F(CimxmlTest, DocumentTypesAreHarmless) {
  const std::string good = intrinsic("GetClass", kThing);
  EXPECT_EQ(refusalOf("<!DOCTYPE CIM>" + good), "");
  EXPECT_EQ(refusalOf("<!DOCTYPE CIM SYSTEM \"file:///dev/zero\">" + good), "");
  EXPECT_EQ(refusalOf("<?xml version=\"1.0\"?><!DOCTYPE CIM PUBLIC '-//A//[B]' 'http://[::1]/a.dtd'>" + good),
            "");
  EXPECT_EQ(refusalOf("<!DOCTYPE CIM []>" + good), "400 request-not-well-formed");
  EXPECT_EQ(refusalOf("<!DOCTYPE CIM [<!ENTITY foo \"bar\">]>" + good), "400 request-not-well-formed");
  EXPECT_EQ(refusalOf("<!DOCTYPE CIM SYSTEM 'a' [<!ENTITY foo SYSTEM \"file:///etc/passwd\">]>" +
                      intrinsic("GetInstance", parameter("InstanceName", "&foo;"))),
            "400 request-not-well-formed");
}

TEST(XmlTextTest, WhatXmlCannotHoldIsReplaced) {
  std::string out;
  appendEscaped(out, "<a & \"b\">\n\x01\xff\xed\xa0\x80 \xf0\x9f\x98\x80");
  EXPECT_EQ(out, "&lt;a &amp; &quot;b&quot;&gt;&#10;\xef\xbf\xbd\xef\xbf\xbd\xef\xbf\xbd \xf0\x9f\x98\x80");
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

}  // namespace
}  // namespace ZebManager
