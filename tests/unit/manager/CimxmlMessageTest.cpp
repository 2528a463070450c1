// What a message says, and which messages are refused before anything is asked.
#include "CimxmlFixture.h"

namespace ZebManager {
namespace {

using testing::HasSubstr;

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

TEST_F(CimxmlTest, ACallOfAMethodWritesWhateverTheMethodIsCalled) {
  for (const char* const name : {"PerformWork", "GetInstance"}) {
    const CimMessage message =
        readMessage(request("<METHODCALL NAME=\"" + std::string(name) +
                            "\"><LOCALINSTANCEPATH><LOCALNAMESPACEPATH><NAMESPACE NAME=\"root\"/>"
                            "</LOCALNAMESPACEPATH>" +
                            kName + "</LOCALINSTANCEPATH></METHODCALL>"));
    EXPECT_FALSE(message.intrinsic) << name;
    EXPECT_TRUE(message.writes) << name;
  }
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

TEST_F(CimxmlTest, AMessageIsOneRequest) {
  const std::string good = intrinsic("GetClass", kThing);
  for (const std::string name : {"IMETHODCALL", "SIMPLEREQ", "MESSAGE"}) {
    std::string more = good;
    const std::string end = "</" + name + ">";
    more.insert(more.find(end) + end.size(), "<" + name + "/>");
    EXPECT_EQ(refusalOf(more), "400 request-not-valid") << name;
  }
}

TEST_F(CimxmlTest, AMessageHasANumber) {
  std::string without = intrinsic("GetClass", kThing);
  without.replace(without.find(" ID="), 4, " NO=");
  EXPECT_EQ(refusalOf(without), "400 request-not-valid");
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
                                      "<!-- &foo; & --><!-- > &foo; -->");
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
  EXPECT_EQ(refusalOf("<!DOCTYPE CIM [ [ ]>" + good), "400 request-not-well-formed");
  EXPECT_EQ(refusalOf("<!DOCTYPE CIM [<!ENTITY foo \"bar\">]>" + good), "400 request-not-well-formed");
  EXPECT_EQ(refusalOf("<!DOCTYPE CIM SYSTEM 'a' [<!ENTITY foo SYSTEM \"file:///etc/passwd\">]>" +
                      intrinsic("GetInstance", parameter("InstanceName", "&foo;"))),
            "400 request-not-well-formed");
}

TEST(CimxmlMessageTest, ANamespaceTakesThePlaceOfItsOtherName) {
  const auto named = [](const std::string& nameSpace) {
    return request("<IMETHODCALL NAME=\"GetInstance\"><LOCALNAMESPACEPATH>" + nameSpace +
                   "</LOCALNAMESPACEPATH></IMETHODCALL>");
  };
  const std::string other = "<NAMESPACE NAME=\"root\"/><NAMESPACE NAME=\"CIMV2\"/>";
  EXPECT_EQ(readMessage(withNameSpace(named(other), "root/cimv2", "root/jxv")).nameSpace, "root/jxv");
  EXPECT_EQ(readMessage(withNameSpace(named("<NAMESPACE NAME=\"a\"/>"), "root/cimv2", "root/jxv")).nameSpace,
            "a");
}

}  // namespace
}  // namespace ZebManager
