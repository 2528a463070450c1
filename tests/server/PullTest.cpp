// Enumerations that are pulled from a server: they come to what one answer has, outlive the plug-in's
// process, and go with the clients that leave them.
#include <gmock/gmock.h>
#include <signal.h>

#include <fstream>
#include <regex>

#include "Server.h"

namespace ZebManager {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

std::string value(const std::string& name, const std::string& text) {
  return "<IPARAMVALUE NAME=\"" + name + "\"><VALUE>" + text + "</VALUE></IPARAMVALUE>";
}

std::string ofClass(const std::string& name) {
  return "<IPARAMVALUE NAME=\"ClassName\"><CLASSNAME NAME=\"" + name + "\"/></IPARAMVALUE>";
}

/// Everything between two marks, one text for each pair.
std::vector<std::string> between(const std::string& text, const std::string& begin, const std::string& end) {
  std::vector<std::string> found;
  for (std::size_t at = 0; (at = text.find(begin, at)) != std::string::npos;) {
    const std::size_t stop = text.find(end, at);
    found.push_back(text.substr(at + begin.size(), stop - at - begin.size()));
    at = stop;
  }
  return found;
}

std::vector<std::string> instancesIn(const std::string& answer) {
  return between(answer, "<INSTANCE CLASSNAME", "</INSTANCE>");
}

std::string contextIn(const std::string& answer) {
  const auto found = between(answer, "NAME=\"EnumerationContext\" PARAMTYPE=\"string\"><VALUE>", "</VALUE>");
  return found.empty() ? "" : found.front();
}

class PulledServerTest : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    server = std::make_unique<Server>(std::vector<std::string>{"--source", ZEB_SNAPSHOTS "/two_cards.json"},
                                      "[limits]\nenumerations = 260\n[serve]\naliases = [\"root/cimv2\"]\n");
  }
  static void TearDownTestSuite() { server.reset(); }

  static std::string ask(const std::string& operation, const std::string& parameters,
                         const std::string& user = {}, const std::string& nameSpace = "jxv") {
    const std::string headers = user.empty() ? "" : "Authorization: Basic " + user + "\r\n";
    return ZebManager::exchange(
        server->http(), post(call(operation, parameters, {"root", nameSpace}), operation, "root/" + nameSpace,
                             headers + "Connection: close\r\n"));
  }

  static std::string pull(const std::string& context, const std::string& most, const std::string& user = {},
                          const std::string& nameSpace = "jxv") {
    return ask("PullInstancesWithPath", value("EnumerationContext", context) + value("MaxObjectCount", most),
               user, nameSpace);
  }

  /// All instances of a class, so many at a time.
  static std::vector<std::string> pulled(const std::string& className, unsigned most,
                                         const std::string& nameSpace = "jxv") {
    std::string answer = ask("OpenEnumerateInstances", ofClass(className), {}, nameSpace);
    std::vector<std::string> all;
    for (int round = 0; round < 100; ++round) {
      for (const std::string& instance : instancesIn(answer)) all.push_back(instance);
      const std::string context = contextIn(answer);
      if (context.empty()) break;
      answer = pull(context, std::to_string(most), {}, nameSpace);
    }
    EXPECT_THAT(answer, HasSubstr("NAME=\"EndOfSequence\" PARAMTYPE=\"boolean\"><VALUE>TRUE</VALUE>"));
    return all;
  }

  static std::unique_ptr<Server> server;
};

std::unique_ptr<Server> PulledServerTest::server;

constexpr char kRoot[] = "cm9vdDpzZWNyZXQ=";        // root:secret
constexpr char kDaemon[] = "ZGFlbW9uOnNlY3JldA==";  // daemon:secret

TEST_F(PulledServerTest, PiecesTogetherAreTheWhole) {
  for (const char* const className :
       {"ZEB_EthernetPort", "CIM_ManagedElement", "CIM_Dependency", "ZEB_AutoStart"}) {
    const auto whole = instancesIn(ask("EnumerateInstances", ofClass(className)));
    EXPECT_FALSE(whole.empty());
    EXPECT_THAT(pulled(className, 3), testing::UnorderedElementsAreArray(whole)) << className;
    EXPECT_THAT(pulled(className, 1000), testing::UnorderedElementsAreArray(whole)) << className;
  }
  EXPECT_EQ(pulled("ZEB_EthernetPort", 3),
            instancesIn(ask("EnumerateInstances", ofClass("ZEB_EthernetPort"))));
}

TEST_F(PulledServerTest, SubscriptionsArePulledLikeTheRest) {
  const auto whole = instancesIn(ask("EnumerateInstances", ofClass("CIM_Namespace"), {}, "interop"));
  EXPECT_EQ(whole.size(), 3U) << "with the other name of one";
  EXPECT_EQ(pulled("CIM_Namespace", 1, "interop"), whole);
}

TEST_F(PulledServerTest, NamespacesHaveOtherNames) {
  const std::string ports = ofClass("ZEB_EthernetPort");
  const auto whole = instancesIn(ask("EnumerateInstances", ports));
  EXPECT_EQ(instancesIn(ask("EnumerateInstances", ports, {}, "cimv2")), whole);
  const std::string opened = ask("OpenEnumerateInstances", ports, {}, "cimv2");
  EXPECT_EQ(instancesIn(pull(contextIn(opened), "100")), whole);
  const std::string interop = ZebManager::exchange(
      server->http(), post(call("EnumerateClassNames", "", {"interop"}), "EnumerateClassNames", "interop"));
  EXPECT_THAT(interop, HasSubstr("<CLASSNAME NAME=\"CIM_ManagedElement\"/>"));
  const std::string deep = ask("EnumerateClassNames", value("DeepInheritance", "TRUE"), {}, "interop");
  EXPECT_THAT(deep, HasSubstr("<CLASSNAME NAME=\"CIM_RegisteredProfile\"/>"));
  EXPECT_THAT(deep, testing::Not(HasSubstr("CIM_EthernetPort")));
}

TEST_F(PulledServerTest, AContextIsItsUsers) {
  const std::string context = contextIn(ask("OpenEnumerateInstances", ofClass("ZEB_EthernetPort"), kRoot));
  ASSERT_EQ(context.size(), 32U);
  EXPECT_THAT(pull(context, "1"), HasSubstr("<ERROR CODE=\"21\""));
  EXPECT_THAT(pull(context, "1", kDaemon), HasSubstr("<ERROR CODE=\"21\""));
  EXPECT_THAT(pull(context, "1", kRoot, "interop"), HasSubstr("<ERROR CODE=\"21\""));
  EXPECT_THAT(pull(context, "4294967296", kRoot), HasSubstr("<ERROR CODE=\"4\""));
  EXPECT_THAT(instancesIn(pull(context, "4294967295", kRoot)), testing::Not(testing::IsEmpty()));
}

/// The plug-in's process, whatever becomes of it, holds nothing of an enumeration.
TEST_F(PulledServerTest, AnEnumerationOutlivesThePluginsProcess) {
  const std::string opened = ask("OpenEnumerateInstances", ofClass("ZEB_EthernetPort"));
  for (const auto& task :
       std::filesystem::directory_iterator("/proc/" + std::to_string(server->id()) + "/task")) {
    std::ifstream children(task.path() / "children");
    for (pid_t child = 0; children >> child;) {
      std::string name;
      std::getline(std::ifstream("/proc/" + std::to_string(child) + "/comm") >> std::ws, name);
      if (name == "zebcim-plugin") kill(child, SIGKILL);
    }
  }
  EXPECT_EQ(instancesIn(pull(contextIn(opened), "100")),
            instancesIn(ask("EnumerateInstances", ofClass("ZEB_EthernetPort"))));
}

TEST_F(PulledServerTest, QueriesAreAnswered) {
  const auto query = [](const std::string& language, const std::string& text) {
    return ask("ExecQuery", value("QueryLanguage", language) + value("Query", text));
  };
  const auto ports = instancesIn(ask("EnumerateInstances", ofClass("ZEB_EthernetPort")));
  for (const char* const language : {"WQL", "DMTF:CQL"}) {
    EXPECT_EQ(instancesIn(query(language, "SELECT * FROM CIM_EthernetPort")), ports);
    const auto narrowed = query(language,
                                "SELECT DeviceID FROM CIM_ManagedElement WHERE CIM_ManagedElement ISA "
                                "CIM_EthernetPort AND DeviceID LIKE '%:1'");
    ASSERT_EQ(instancesIn(narrowed).size(), 1U) << narrowed;
    EXPECT_THAT(narrowed, HasSubstr("<VALUE.OBJECT><INSTANCE CLASSNAME=\"ZEB_EthernetPort\"><PROPERTY "
                                    "NAME=\"DeviceID\" TYPE=\"string\"><VALUE>JXV:ZEB_EthernetPort:1</VALUE>"
                                    "</PROPERTY></INSTANCE></VALUE.OBJECT>"));
  }
  EXPECT_THAT(query("WQL", "SELECT * FROM"), HasSubstr("<ERROR CODE=\"15\""));
  EXPECT_THAT(query("SQL", "SELECT * FROM CIM_EthernetPort"), HasSubstr("<ERROR CODE=\"14\""));
  EXPECT_THAT(query("WQL", std::string(4'190'000, 'x')), HasSubstr("<ERROR CODE=\"15\""));
  EXPECT_THAT(query("WQL", std::string(4U << 20, 'x')), StartsWith("HTTP/1.1 413 "));
}

/// Each opens and is never seen again. What they leave is bounded, and others still have their own.
TEST_F(PulledServerTest, AHundredClientsThatGoAwayHinderNobody) {
  const std::size_t before = server->memory();
  int refused = 0;
  for (int i = 0; i < 150; ++i) {
    const std::string answer = ask("OpenEnumerateInstances", ofClass("CIM_ManagedElement"), kDaemon);
    refused += answer.find("<ERROR CODE=\"27\"") != std::string::npos ? 1 : 0;
  }
  EXPECT_EQ(refused, 150 - 65) << "a quarter of all places is one user's";
  EXPECT_FALSE(contextIn(ask("OpenEnumerateInstances", ofClass("ZEB_EthernetPort"), kRoot)).empty());
  EXPECT_LT(server->memory(), before + (32U << 20));
}

}  // namespace
}  // namespace ZebManager
