#include <gmock/gmock.h>

#include <map>

#include "schema/Caseless.h"
#include "server/HttpHead.h"

namespace ZebManager {
namespace {

using testing::Contains;
using testing::Pair;

constexpr char kMan[] = "http://www.dmtf.org/cim/mapping/http/v1.0 ; ns=73";

/// A head with these headers, found in any case.
HttpHead head(const std::string& method, std::vector<std::pair<std::string, std::string>> headers) {
  headers.emplace_back("Content-Type", "application/xml; charset=\"utf-8\"");
  return {method,
          [headers](const std::string& name) {
            for (const auto& [own, value] : headers) {
              if (sameName(own, name)) return value;
            }
            return std::string();
          },
          true};
}

/// One whose headers are known by name, too.
HttpHead named(std::vector<std::pair<std::string, std::string>> headers) {
  HttpHead made = head("POST", headers);
  for (const auto& [name, value] : headers) made.names.push_back(name);
  return made;
}

unsigned statusOf(const HttpHead& asked) {
  const auto refusal = refuseHead(asked);
  return refusal ? refusal->status : 200;
}

TEST(HttpHead, ALengthThatIsSaidInTwoWaysIsRefusedAndTheConnectionClosed) {
  EXPECT_FALSE(refuseAmbiguous(named({{"Content-Length", "5"}, {"Host", "a"}, {"Authorization", "b"}})));
  EXPECT_FALSE(refuseAmbiguous(named({{"transfer-encoding", "Chunked"}})));
  for (const auto& refused :
       {named({{"Content-Length", "5"}, {"Transfer-Encoding", "chunked"}}),
        named({{"Content-Length", "5"}, {"content-length", "5"}}),
        named({{"Transfer-Encoding", "chunked"}, {"Transfer-Encoding", "chunked"}}),
        named({{"Transfer-Encoding", "gzip, chunked"}}), named({{"Transfer-Encoding", ""}}),
        named({{"Host", "a"}, {"Host", "b"}}), named({{"Authorization", "a"}, {"Authorization", "a"}}),
        named({{"Content-Length ", "5"}}), named({{" X", "5"}}), named({{"X\t", "5"}}), named({{"", "5"}})}) {
    const auto refusal = refuseAmbiguous(refused);
    ASSERT_TRUE(refusal) << testing::PrintToString(refused.names);
    EXPECT_EQ(refusal->status, 400U);
    EXPECT_THAT(refusal->headers, Contains(Pair("Connection", "close")));
  }
}

TEST(HttpHead, PostNeedsTheHeadersOfCimAsTheyAre) {
  EXPECT_EQ(statusOf(head("POST", {{"CIMOperation", "MethodCall"}})), 200U);
  EXPECT_EQ(statusOf(head("POST", {{"73-CIMOperation", "MethodCall"}, {"Man", kMan}})), 400U);
}

TEST(HttpHead, WhatCannotBeReadIsRefusedByItsType) {
  const auto status = [](const char* header, const char* value) {
    return statusOf(head("POST", {{"CIMOperation", "MethodCall"}, {header, value}}));
  };
  for (const char* const type : {"application/xml", "text/xml", "TEXT/XML; charset=UTF-8"})
    EXPECT_EQ(status("Content-Type", type), 200U) << type;
  for (const char* const type :
       {"text/html", "application/xml; charset=iso-8859-1", "text/xml; charset=\"utf-16\""})
    EXPECT_EQ(status("Content-Type", type), 415U) << type;
  EXPECT_EQ(status("Content-Encoding", "identity"), 200U);
  EXPECT_EQ(status("Content-Encoding", "gzip"), 415U);
}

TEST(HttpHead, MPostNeedsThemWithTheNumberThatManGives) {
  EXPECT_EQ(statusOf(head("M-POST", {{"73-CIMOperation", "MethodCall"}, {"Man", kMan}})), 200U);
  EXPECT_EQ(statusOf(head("M-POST", {{"73-CIMOperation", "MethodCall"},
                                     {"Man", "\"http://www.dmtf.org/cim/mapping/http/v1.0\";ns=73"}})),
            200U);
  EXPECT_EQ(statusOf(head("M-POST", {{"74-CIMOperation", "MethodCall"}, {"Man", kMan}})), 400U);
  EXPECT_EQ(statusOf(head("M-POST", {{"CIMOperation", "MethodCall"}, {"Man", kMan}})), 400U);
}

/// 510: the extension that is mandatory is none that the server knows.
TEST(HttpHead, AnotherOrNoDeclarationOfAnExtensionIsNotExtended) {
  for (const char* const man :
       {"", "http://www.dmtf.org/cim/mapping/http/v1.0", "ns=73",
        "http://www.dmtf.org/cim/mapping/http/v2.0; ns=73",
        "http://www.dmtf.org/cim/mapping/http/v1.01; ns=73", "http://example.com/other; ns=73",
        "http://www.dmtf.org/cim/mapping/http/v1.0; ns=7a"}) {
    EXPECT_EQ(statusOf(head("M-POST", {{"73-CIMOperation", "MethodCall"}, {"Man", man}})), 510U) << man;
  }
}

/// A client may declare several extensions in one header.
TEST(HttpHead, TheMappingOfCimIsFoundAmongOthers) {
  const std::string several = "http://example.com/other; ns=12, " + std::string(kMan);
  EXPECT_EQ(statusOf(head("M-POST", {{"73-CIMOperation", "MethodCall"}, {"Man", several}})), 200U);
  EXPECT_EQ(statusOf(head("M-POST", {{"12-CIMOperation", "MethodCall"}, {"Man", several}})), 400U);
}

TEST(HttpHead, TheAnswerToMPostDeclaresTheExtension) {
  const HttpAnswer answer = extended(head("M-POST", {{"Man", kMan}}), operationAnswer("<CIM/>"));
  EXPECT_EQ(answer.status, 200U);
  EXPECT_THAT(answer.headers, Contains(Pair("73-CIMOperation", "MethodResponse")));
  EXPECT_THAT(answer.headers, Contains(Pair("Ext", testing::_)));
  EXPECT_THAT(answer.headers, Contains(Pair("Man", kMan)));
  EXPECT_THAT(answer.headers, Contains(Pair("Cache-Control", "no-cache")));
}

TEST(HttpHead, ErrorsOfMPostCarryTheNumberToo) {
  const HttpHead asked = head("M-POST", {{"73-CIMOperation", "Other"}, {"Man", kMan}});
  const auto refusal = refuseHead(asked);
  ASSERT_TRUE(refusal);
  EXPECT_EQ(refusal->status, 400U);
  EXPECT_THAT(extended(asked, *refusal).headers, Contains(Pair("73-CIMError", "unsupported-operation")));
  EXPECT_THAT(extended(head("POST", {}), *refusal).headers,
              Contains(Pair("CIMError", "unsupported-operation")));
}

TEST(HttpHead, EachHeaderIsHeldAgainstTheMessage) {
  CimMessage message;
  message.operation = "GetClass";
  message.nameSpace = "root/jxv";
  const auto refused = [&](const char* method, const char* object) {
    return refuseMismatch(head("POST", {{"CIMMethod", method}, {"CIMObject", object}}), message).has_value();
  };
  EXPECT_FALSE(refused("getclass", "root%2Fjxv"));
  EXPECT_TRUE(refused("GetInstance", "root/jxv"));
  EXPECT_TRUE(refused("GetClass", "root/cimv2"));
}

TEST(HttpHead, HeadersOfMPostAreHeldAgainstTheMessage) {
  CimMessage message;
  message.operation = "GetClass";
  message.nameSpace = "root/jxv";
  const auto with = [](const std::string& number) {
    return head("M-POST",
                {{"Man", kMan}, {number + "-CIMMethod", "GetClass"}, {number + "-CIMObject", "root/jxv"}});
  };
  EXPECT_FALSE(refuseMismatch(with("73"), message));
  EXPECT_TRUE(refuseMismatch(with("74"), message));
}

}  // namespace
}  // namespace ZebManager
