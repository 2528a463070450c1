// Requests that were changed at random: whatever they say, the server goes on.
#include <gmock/gmock.h>

#include <chrono>
#include <cstdlib>
#include <random>

#include "Attack.h"
#include "Ground.h"
#include "Unit.h"
#include "support/Length.h"

namespace ZebManager {
namespace {

using Clock = std::chrono::steady_clock;

class Mutator {
 public:
  explicit Mutator(unsigned seed) : _random(seed) {}

  std::string operator()(std::string text) {
    for (std::size_t changes = 1 + below(6); changes > 0; --changes) change(text);
    return text;
  }
  std::size_t below(std::size_t bound) { return bound == 0 ? 0 : _random() % bound; }

 private:
  void change(std::string& text) {
    static const std::vector<std::string> kWords = {"<",
                                                    ">",
                                                    "\"",
                                                    "&",
                                                    "&#0;",
                                                    "&#xD800;",
                                                    "]]>",
                                                    "<![CDATA[",
                                                    "<!--",
                                                    "\xff",
                                                    "\xc0\x80",
                                                    std::string(1, '\0'),
                                                    "-1",
                                                    "18446744073709551616",
                                                    "99999999999999999999",
                                                    "%00",
                                                    "../",
                                                    "root/interop",
                                                    "ZEB_EthernetPort",
                                                    "VALUE.REFERENCE",
                                                    "VALUE.ARRAY",
                                                    "KEYVALUE",
                                                    "<VALUE>",
                                                    "</VALUE>",
                                                    "NULL",
                                                    "xmlns=\"a\"",
                                                    "\r\n\r\n"};
    const std::size_t at = below(text.size() + 1), length = below(40);
    switch (below(5)) {
      case 0:
        if (at < text.size()) text[at] = static_cast<char>(_random());
        return;
      case 1:
        text.erase(at, length);
        return;
      case 2:
        text.insert(at, kWords[below(kWords.size())]);
        return;
      case 3:
        text.insert(at, text.substr(below(text.size() + 1), length));
        return;
      default:
        text.resize(std::max<std::size_t>(at, 1));
    }
  }

  std::mt19937 _random;
};

std::vector<std::string> seeds() {
  const std::string name =
      "<INSTANCENAME CLASSNAME=\"ZEB_EthernetPort\"><KEYBINDING NAME=\"DeviceID\"><KEYVALUE "
      "VALUETYPE=\"string\">a"
      "</KEYVALUE></KEYBINDING></INSTANCENAME>";
  const auto parameter = [](const std::string& as, const std::string& value) {
    return "<IPARAMVALUE NAME=\"" + as + "\">" + value + "</IPARAMVALUE>";
  };
  const std::string list =
      parameter("PropertyList", "<VALUE.ARRAY><VALUE>Name</VALUE><VALUE>Speed</VALUE></VALUE.ARRAY>");
  return {call("EnumerateInstances", parameter("ClassName", "<CLASSNAME NAME=\"ZEB_EthernetPort\"/>") + list),
          call("GetInstance", parameter("InstanceName", name) + list),
          call("Associators", parameter("ObjectName", name) + parameter("Role", "<VALUE>Antecedent</VALUE>")),
          call("ReferenceNames", parameter("ObjectName", name)),
          call("GetClass", parameter("ClassName", "<CLASSNAME NAME=\"CIM_ManagedElement\"/>")),
          call("EnumerateInstanceNames",
               parameter("ClassName", "<CLASSNAME NAME=\"CIM_ListenerDestination\"/>"), {"root", "interop"})};
}

std::string methodOf(const std::string& body) {
  const std::size_t at = body.find("IMETHODCALL NAME=\"");
  return at == std::string::npos ? "GetClass" : body.substr(at + 18, body.find('"', at + 18) - at - 18);
}

/// Bodies, with heads that fit them so that they get far, and whole requests.
TEST(Mutations, EndNothing) {
  REQUIRE_GROUND();
  const Unit unit;
  ASSERT_EQ(statusOf(ask(unit.http(), instancesOf("ZEB_EthernetPort"))), 200);
  const auto plugin = unit.processes("zebcim-plugin");
  const auto end = Clock::now() + std::chrono::seconds(ZEB::test::length(12, 600));
  std::atomic<int> sent = 0, internal = 0;
  together(4, [&](int thread) {
    Mutator mutate(static_cast<unsigned>(thread) + (ZEB::test::isSoak() ? std::random_device()() : 0U));
    const auto bodies = seeds();
    while (Clock::now() < end) {
      std::string body = bodies[mutate.below(bodies.size())];
      const std::string method = methodOf(body);
      std::string request;
      if (mutate.below(4) != 0) {
        request = post(mutate(std::move(body)), method, "root/jxv", "Connection: close\r\n");
      } else {
        request = mutate(post(body, method));
        request += "\r\n\r\n";
      }
      internal += statusOf(ask(unit.http(), request, 0.1)) == 500;
      ++sent;
    }
  });
  std::cout << sent << " requests\n";
  EXPECT_EQ(internal, 0);
  EXPECT_EQ(statusOf(ask(unit.http(), instancesOf("ZEB_EthernetPort"))), 200);
  EXPECT_EQ(unit.processes("zebcim-plugin"), plugin) << unit.log();
  EXPECT_LT(unit.memory(), 256U << 20);
}

}  // namespace
}  // namespace ZebManager
