// What no honest client sends: the error that the standards name, and a server that goes on.
#include <gmock/gmock.h>

#include <atomic>
#include <chrono>
#include <thread>

#include "Server.h"

namespace ZebManager {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

class HostileTest : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    server =
        std::make_unique<Server>(std::vector<std::string>{"--source", ZEB_SNAPSHOTS "/one_port.json"},
                                 "[limits]\nrequest-seconds = 2\nrequest-bytes = 100000\ncall-seconds = 8\n");
  }
  static void TearDownTestSuite() { server.reset(); }

  static std::string ask(const std::string& bytes) { return exchange(server->http(), bytes); }

  void TearDown() override {
    const std::string names = call("EnumerateClassNames", "");
    EXPECT_THAT(ask(post(names, "EnumerateClassNames")), StartsWith("HTTP/1.1 200 "));
  }

  static std::unique_ptr<Server> server;
};

std::unique_ptr<Server> HostileTest::server;

std::string asked(const std::string& className) {
  return "<IPARAMVALUE NAME=\"ClassName\"><CLASSNAME NAME=\"" + className + "\"/></IPARAMVALUE>";
}

TEST_F(HostileTest, MethodsOtherThanPostAreNotAllowed) {
  EXPECT_THAT(ask("PUT /cimom HTTP/1.1\r\nHost: localhost\r\nContent-Length: 0\r\nConnection: close\r\n\r\n"),
              StartsWith("HTTP/1.1 405 "));
  EXPECT_THAT(ask("GET /cimom HTTP/1.1\r\nHost: localhost\r\nConnection: close\r\n\r\n"),
              StartsWith("HTTP/1.1 405 "));
}

TEST_F(HostileTest, OtherContentsThanXmlAreUnsupported) {
  EXPECT_THAT(
      ask("POST / HTTP/1.1\r\nHost: localhost\r\nContent-Type: text/html\r\nCIMOperation: MethodCall\r\n"
          "Content-Length: 0\r\n\r\n"),
      StartsWith("HTTP/1.1 415 "));
  EXPECT_THAT(ask(post("x", "GetClass", "root/jxv", "Content-Encoding: gzip\r\nConnection: close\r\n")),
              StartsWith("HTTP/1.1 415 "));
}

TEST_F(HostileTest, HeadersHaveToSayWhatTheRequestSays) {
  const std::string answer = ask(post(call("EnumerateClassNames", ""), "GetClass"));
  EXPECT_THAT(answer, StartsWith("HTTP/1.1 400 "));
  EXPECT_THAT(answer, HasSubstr("CIMError: header-mismatch"));
}

TEST_F(HostileTest, TruncatedXmlIsNotWellFormed) {
  const std::string whole = call("GetClass", asked("CIM_ManagedElement"));
  for (std::size_t length = 0; length < whole.size(); length += 17) {
    const std::string answer = ask(post(whole.substr(0, length), "GetClass"));
    EXPECT_THAT(answer, StartsWith("HTTP/1.1 400 ")) << length;
    EXPECT_THAT(answer, HasSubstr("CIMError: request-not-")) << length;
  }
}

TEST_F(HostileTest, DeepNestingIsRefused) {
  std::string deep;
  for (int i = 0; i < 10'000; ++i) deep += "<a>";
  for (int i = 0; i < 10'000; ++i) deep += "</a>";
  const std::string answer = ask(post(deep, "GetClass"));
  EXPECT_THAT(answer, StartsWith("HTTP/1.1 400 "));
  EXPECT_THAT(answer, HasSubstr("CIMError: request-not-valid"));
}

TEST_F(HostileTest, EntitiesAreNotExpanded) {
  const std::string bomb = "<!DOCTYPE CIM [<!ENTITY a \"aaaaaaaaaa\"><!ENTITY b \"&a;&a;&a;&a;\">]>" +
                           call("GetClass", asked("&b;")).substr(38);
  const std::string answer = ask(post(bomb, "GetClass"));
  EXPECT_THAT(answer, StartsWith("HTTP/1.1 400 "));
  EXPECT_THAT(answer, HasSubstr("CIMError: request-not-well-formed"));
}

TEST_F(HostileTest, ReferencesToNothingAreNotWellFormed) {
  const std::string answer = ask(post(call("GetClass", asked("&foo;")), "GetClass"));
  EXPECT_THAT(answer, StartsWith("HTTP/1.1 400 "));
  EXPECT_THAT(answer, HasSubstr("CIMError: request-not-well-formed"));
  EXPECT_THAT(ask(post(call("GetClass", asked("&#90;EB_EthernetPort")), "GetClass")),
              HasSubstr("<CLASS NAME=\"ZEB_EthernetPort\""));
}

TEST_F(HostileTest, EnormousBodiesAreTooLarge) {
  EXPECT_THAT(ask(post(std::string(100'001, ' '), "GetClass")), StartsWith("HTTP/1.1 413 "));
}

TEST_F(HostileTest, BytesThatAreNoUtf8AreNotWellFormed) {
  const std::string answer = ask(post(call("GetClass", asked("\xff\xfe")), "GetClass"));
  EXPECT_THAT(answer, StartsWith("HTTP/1.1 400 "));
}

TEST_F(HostileTest, UnknownThingsAreCimErrors) {
  const std::string list = asked("ZEB_EthernetPort");
  EXPECT_THAT(
      ask(post(call("EnumerateInstances", list, {"root", "none"}), "EnumerateInstances", "root/none")),
      HasSubstr("<ERROR CODE=\"3\""));
  EXPECT_THAT(ask(post(call("EnumerateInstances", asked("No_Class")), "EnumerateInstances")),
              HasSubstr("<ERROR CODE=\"5\""));
  EXPECT_THAT(ask(post(call("GetClass", asked("No_Class")), "GetClass")), HasSubstr("<ERROR CODE=\"6\""));
  EXPECT_THAT(ask(post(call("NoOperation", ""), "NoOperation")), HasSubstr("<ERROR CODE=\"7\""));
  EXPECT_THAT(ask(post(call("ExecQuery", ""), "ExecQuery")), HasSubstr("<ERROR CODE=\"4\""));
  EXPECT_THAT(ask(post(call("EnumerateInstances", ""), "EnumerateInstances")),
              HasSubstr("<ERROR CODE=\"4\""));
}

TEST_F(HostileTest, WritingNeedsAUser) {
  const std::string answer = ask(post(call("DeleteClass", asked("ZEB_EthernetPort")), "DeleteClass"));
  EXPECT_THAT(answer, StartsWith("HTTP/1.1 401 "));
  EXPECT_THAT(answer, HasSubstr("WWW-Authenticate: Basic realm="));
  EXPECT_THAT(ask(post(call("deleteinstance", ""), "deleteinstance")), StartsWith("HTTP/1.1 401 "));
}

/// By its design the provider does not return from a property list that names a setting and then something
/// that is none.
TEST_F(HostileTest, ACallThatNeverReturnsDisturbsNobody) {
  const std::string name =
      "<INSTANCENAME CLASSNAME=\"ZEB_EthEventSettings\"><KEYBINDING "
      "NAME=\"InstanceId\"><KEYVALUE>JXV:0</KEYVALUE>"
      "</KEYBINDING></INSTANCENAME>";
  const std::string modify = call(
      "ModifyInstance",
      "<IPARAMVALUE NAME=\"ModifiedInstance\"><VALUE.NAMEDINSTANCE>" + name +
          "<INSTANCE CLASSNAME=\"ZEB_EthEventSettings\"><PROPERTY "
          "NAME=\"PollInterval\"><VALUE>300</VALUE></PROPERTY>"
          "</INSTANCE></VALUE.NAMEDINSTANCE></IPARAMVALUE><IPARAMVALUE NAME=\"PropertyList\"><VALUE.ARRAY>"
          "<VALUE>PollInterval</VALUE><VALUE>NoSuchSetting</VALUE></VALUE.ARRAY></IPARAMVALUE>");
  const std::string root = "Authorization: Basic cm9vdDpzZWNyZXQ=\r\nConnection: close\r\n";
  std::string answer;
  std::atomic<bool> returned = false;
  std::thread stuck([&] {
    answer = ask(post(modify, "ModifyInstance", "root/jxv", root));
    returned = true;
  });
  const std::string read = post(call("EnumerateInstances", asked("ZEB_EthernetPort")), "EnumerateInstances");
  int answered = 0;
  while (!returned) {
    EXPECT_THAT(ask(read), HasSubstr("001b2100005e"));
    if (!returned) ++answered;
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  stuck.join();
  EXPECT_GT(answered, 10);
  EXPECT_THAT(answer, StartsWith("HTTP/1.1 200 "));
  EXPECT_THAT(answer, HasSubstr("<ERROR CODE=\"1\""));
}

TEST_F(HostileTest, ConnectionsThatSayNothingAreClosed) {
  const auto begin = std::chrono::steady_clock::now();
  std::vector<std::thread> idle;
  for (int i = 0; i < 100; ++i) {
    idle.emplace_back([i] { exchange(server->http(), i % 2 == 0 ? "" : "POST / HTTP/1.1\r\nHost:", 60); });
  }
  const std::string names = call("EnumerateClassNames", "");
  EXPECT_THAT(ask(post(names, "EnumerateClassNames")), StartsWith("HTTP/1.1 200 "));
  for (std::thread& thread : idle) thread.join();
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(40));
}

}  // namespace
}  // namespace ZebManager
