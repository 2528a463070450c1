// Writing without rights, in the many ways there are, and writes that were acknowledged when a process was
// killed.
#include <gmock/gmock.h>
#include <signal.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <optional>
#include <random>
#include <regex>

#include "Attack.h"
#include "Ground.h"
#include "TlsClient.h"
#include "Unit.h"
#include "support/Length.h"

namespace ZebManager {
namespace {

using testing::AnyOf;
using testing::HasSubstr;
using testing::Not;
using Clock = std::chrono::steady_clock;

constexpr char kSettings[] =
    "<INSTANCENAME CLASSNAME=\"ZEB_EthEventSettings\"><KEYBINDING "
    "NAME=\"InstanceId\"><KEYVALUE>JXV:0</KEYVALUE>"
    "</KEYBINDING></INSTANCENAME>";

std::string parameter(const std::string& name, const std::string& value) {
  return "<IPARAMVALUE NAME=\"" + name + "\">" + value + "</IPARAMVALUE>";
}

std::string settingTo(const std::string& property, unsigned value) {
  return parameter("InstanceName", kSettings) + parameter("PropertyName", "<VALUE>" + property + "</VALUE>") +
         parameter("NewValue", "<VALUE>" + std::to_string(value) + "</VALUE>");
}

std::string filterNamed(const std::string& name) {
  return parameter(
      "NewInstance",
      "<INSTANCE CLASSNAME=\"CIM_IndicationFilter\"><PROPERTY NAME=\"Name\" TYPE=\"string\"><VALUE>" + name +
          "</VALUE></PROPERTY><PROPERTY NAME=\"Query\" TYPE=\"string\"><VALUE>SELECT * FROM "
          "CIM_AlertIndication</VALUE></PROPERTY><PROPERTY NAME=\"QueryLanguage\" TYPE=\"string\">"
          "<VALUE>WQL</VALUE></PROPERTY></INSTANCE>");
}

/// The value of a setting in an answer.
std::optional<unsigned> settingIn(const std::string& answer, const std::string& name) {
  std::smatch match;
  const std::regex pattern("NAME=\"" + name + "\" TYPE=\"uint32\"[^>]*><VALUE>([0-9]+)");
  return std::regex_search(answer, match, pattern)
             ? std::optional(static_cast<unsigned>(std::stoul(match[1])))
             : std::nullopt;
}

struct Write {
  std::string method, nameSpace, body;
};

Write intrinsic(const std::string& method, const std::string& parameters, const std::string& space = "jxv") {
  return {method, "root/" + space, call(method, parameters, {"root", space})};
}

std::string calling(const std::string& method, const std::string& path) {
  return "<?xml version=\"1.0\"?><CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\"><MESSAGE ID=\"1\" "
         "PROTOCOLVERSION=\"1.0\">"
         "<SIMPLEREQ><METHODCALL NAME=\"" +
         method + "\">" + path + "</METHODCALL></SIMPLEREQ></MESSAGE></CIM>";
}

std::vector<Write> writes() {
  const std::string modified =
      parameter("ModifiedInstance",
                std::string("<VALUE.NAMEDINSTANCE>") + kSettings +
                    "<INSTANCE CLASSNAME=\"ZEB_EthEventSettings\"><PROPERTY NAME=\"PollInterval\" "
                    "TYPE=\"uint32\"><VALUE>13</VALUE></PROPERTY></INSTANCE></VALUE.NAMEDINSTANCE>");
  const std::string path = std::string(
                               "<LOCALINSTANCEPATH><LOCALNAMESPACEPATH><NAMESPACE NAME=\"root\"/><NAMESPACE "
                               "NAME=\"jxv\"/></LOCALNAMESPACEPATH>") +
                           kSettings + "</LOCALINSTANCEPATH>";
  std::vector<Write> all = {
      intrinsic("SetProperty", settingTo("PollInterval", 13)),
      intrinsic("setproperty", settingTo("PollInterval", 13)),
      intrinsic("ModifyInstance", modified),
      intrinsic("MODIFYINSTANCE", modified),
      intrinsic("DeleteInstance", parameter("InstanceName", kSettings)),
      intrinsic("CreateInstance", filterNamed("mine"), "interop"),
      intrinsic("createInstance", filterNamed("mine"), "interop"),
      {"Work", "root/jxv:ZEB_EthEventSettings.InstanceId=\"JXV:0\"", calling("Work", path)}};
  for (const char* const other :
       {"CreateClass", "ModifyClass", "DeleteClass", "SetQualifier", "DeleteQualifier"}) {
    all.push_back(intrinsic(other, ""));
  }
  return all;
}

std::string requestOf(const Write& write, const std::string& headers, const std::string& prefix) {
  const bool extended = !prefix.empty();
  return (extended ? "M-POST" : "POST") +
         std::string(
             " /cimom HTTP/1.1\r\nHost: localhost\r\nContent-Type: application/xml\r\nConnection: "
             "close\r\n") +
         (extended ? "Man: http://www.dmtf.org/cim/mapping/http/v1.0 ; ns=41\r\n" : "") + prefix +
         "CIMOperation: MethodCall\r\n" + prefix + "CIMMethod: " + write.method + "\r\n" + prefix +
         "CIMObject: " + write.nameSpace + "\r\n" + headers +
         "Content-Length: " + std::to_string(write.body.size()) + "\r\n\r\n" + write.body;
}

/// What there is to change, as a reader sees it.
std::string state(const Unit& unit) {
  const std::string filters =
      call("EnumerateInstances", parameter("ClassName", "<CLASSNAME NAME=\"CIM_IndicationFilter\"/>"),
           {"root", "interop"});
  return ask(unit.http(), instancesOf("ZEB_EthEventSettings")).substr(200) +
         ask(unit.http(), post(filters, "EnumerateInstances", "root/interop")).substr(200);
}

TEST(Writes, NobodyWithoutTheRightChangesAnything) {
  REQUIRE_GROUND();
  const Unit unit({.http = "*:0"});
  const std::string port = unit.http().substr(unit.http().rfind(':'));
  const std::string before = state(unit);
  const std::string right = credentials("writer", "secret");
  const std::vector<std::string> headers = {"",
                                            credentials("reader", "secret"),
                                            credentials("writer", ""),
                                            credentials("writer", "Secret"),
                                            credentials("writer", "secret\n"),
                                            credentials("expired", "secret"),
                                            credentials("locked", "secret"),
                                            credentials("aged", "secret"),
                                            credentials(" writer", "secret"),
                                            credentials("writer ", "secret"),
                                            credentials("", "secret"),
                                            "Authorization: Bearer secret\r\n",
                                            "Authorization: Basic\r\n",
                                            "Authorization: Basic !!!!\r\n",
                                            "Authorization: \r\n",
                                            "X-" + right,
                                            "Proxy-" + right,
                                            credentials("reader", "secret") + right};
  int tried = 0;
  for (const Write& write : writes()) {
    for (const std::string& header : headers) {
      for (const char* const prefix : {"", "41-"}) {
        const std::string request = requestOf(write, header, prefix);
        const std::string where = tried % 3 == 0 ? "192.0.2.1" : "127.0.0.1";
        const std::string answer =
            tried % 7 == 0 ? TlsClient(unit.https(), "NORMAL").ask(request) : ask(where + port, request);
        ++tried;
        // Nobody judges who guesses too fast: then it is 503.
        EXPECT_THAT(answer, AnyOf(HasSubstr(" 401 "), HasSubstr(" 400 "), HasSubstr(" 503 "),
                                  HasSubstr("<ERROR CODE=\"2\"")))
            << write.method << " " << header << answer;
      }
    }
  }
  EXPECT_EQ(state(unit), before);
  std::cout << tried << " ways\n";
}

/// Each of two changes one setting of the same instance, again and again.
TEST(Writes, AChangeOfOnePropertyLeavesTheOthersAlone) {
  REQUIRE_GROUND();
  const Unit unit;
  const std::string writer = credentials("writer", "secret") + "Connection: close\r\n";
  const auto set = [&](const char* property, unsigned value) {
    const Write write = intrinsic("SetProperty", settingTo(property, value));
    EXPECT_THAT(ask(unit.http(), post(write.body, write.method, write.nameSpace, writer)),
                Not(HasSubstr("<ERROR")));
  };
  int lost = 0;
  for (unsigned round = 1; round <= 60; ++round) {
    together(2, [&](int side) { set(side == 0 ? "PollInterval" : "FloodThreshold", 1000 + round); });
    const std::string now = ask(unit.http(), instancesOf("ZEB_EthEventSettings"));
    for (const char* const name : {"PollInterval", "FloodThreshold"})
      lost += settingIn(now, name) != 1000 + round;
  }
  EXPECT_EQ(lost, 0);
}

/// One who writes, again and again, the number of the write.
class Writer {
 public:
  /// False when there was no answer. One that is no acknowledgement leaves open what has become of the write.
  bool write(const Server& server) {
    const Write set = intrinsic("SetProperty", settingTo("PollInterval", ++_tried));
    const std::string head = "Authorization: Basic cm9vdDpzZWNyZXQ=\r\nConnection: close\r\n";
    const std::string answer = ask(server.http(), post(set.body, set.method, set.nameSpace, head), 10);
    if (answer.find("</CIM>") == std::string::npos) return false;
    if (answer.find("<ERROR") != std::string::npos) {
      EXPECT_THAT(answer, HasSubstr("whether it has taken effect is not known"));
      ++unclear;
    } else {
      _last = _tried;
      ++acknowledged;
    }
    return true;
  }
  /// What was acknowledged last is there, or what came after it.
  void check(const Server& server) const {
    const auto value = settingIn(ask(server.http(), instancesOf("ZEB_EthEventSettings")), "PollInterval");
    ASSERT_TRUE(value);
    if (_last == 0) return;
    ASSERT_TRUE(*value >= _last && *value <= _tried) << *value << ", " << _last << " of " << _tried;
  }

  int acknowledged = 0, unclear = 0;

 private:
  unsigned _last = 0, _tried = 0;
};

/// Kills at any time, in turn of the server and of the plug-in's process: what was acknowledged is there
/// afterwards, and of what was not, at most what was under way.
TEST(Writes, WhatWasAcknowledgedOutlivesKills) {
  Server server({"--source", ZEB_SNAPSHOTS "/one_port.json"});
  Writer writer;
  std::mt19937 random(1);
  const auto end = Clock::now() + std::chrono::seconds(ZEB::test::length(16, 600));
  int kills = 0;
  for (; Clock::now() < end; ++kills) {
    const bool whole = kills % 2 == 0;
    std::atomic<bool> over = false;
    std::thread killer([&, id = server.id(), children = server.children(),
                        until = Clock::now() + std::chrono::milliseconds(random() % 300)] {
      std::this_thread::sleep_until(until);
      for (const pid_t process : whole ? std::vector{id} : children) kill(process, SIGKILL);
      over = true;
    });
    while (writer.write(server) && (whole || !over)) {
    }
    killer.join();
    if (whole) {
      server.stop();
      server.start();
    }
    ASSERT_NO_FATAL_FAILURE(writer.check(server));
  }
  std::cout << writer.acknowledged << " acknowledged writes, " << writer.unclear << " that are not clear, "
            << kills << " kills\n";
  EXPECT_GT(writer.acknowledged, 10);
}

}  // namespace
}  // namespace ZebManager
