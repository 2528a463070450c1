// As many listeners as there may be.
#include <gmock/gmock.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <optional>
#include <thread>

#include "Attack.h"
#include "Ground.h"
#include "Unit.h"

namespace ZebManager {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int kListeners = 499;
constexpr char kFilterClass[] = "CIM_IndicationFilter";
constexpr char kListenerClass[] = "CIM_ListenerDestinationCIMXML";

std::string keyOf(const std::string& name, const std::string& value) {
  return "<KEYBINDING NAME=\"" + name + "\"><KEYVALUE VALUETYPE=\"string\">" + value +
         "</KEYVALUE></KEYBINDING>";
}

/// With the keys that the server fills in left out.
std::string nameOf(const std::string& className, const std::string& name) {
  return "<INSTANCENAME CLASSNAME=\"" + className + "\">" + keyOf("Name", name) + "</INSTANCENAME>";
}

std::string reference(const std::string& open, const std::string& close, const std::string& inner) {
  return open + "<VALUE.REFERENCE>" + inner + "</VALUE.REFERENCE>" + close;
}

std::string ends(const std::string& listener, const std::string& element, const std::string& more) {
  return reference("<" + element + " NAME=\"Filter\"" + more, "</" + element + ">",
                   nameOf(kFilterClass, "all")) +
         reference("<" + element + " NAME=\"Handler\"" + more, "</" + element + ">",
                   nameOf(kListenerClass, listener));
}

std::string property(const std::string& name, const std::string& value) {
  return "<PROPERTY NAME=\"" + name + "\" TYPE=\"string\"><VALUE>" + value + "</VALUE></PROPERTY>";
}

class Listeners : public testing::Test {
 protected:
  void SetUp() override {
    REQUIRE_GROUND();
    std::filesystem::create_directories("/run/state");
    ASSERT_EQ(chown("/run/state", kServerUser, kServerUser), 0);
    unit.emplace(UnitOptions{.plugin = {"--include-virtual"}, .state = "/run/state"});
  }

  void perform(const std::string& method, const std::string& parameter) const {
    const std::string answer =
        ask(unit->http(), post(call(method, parameter, {"root", "interop"}), method, "root/interop",
                               credentials("writer", "secret") + "Connection: close\r\n"));
    ASSERT_EQ(statusOf(answer), 200) << method;
    ASSERT_EQ(answer.find("<ERROR"), std::string::npos) << answer;
  }
  void create(const std::string& className, const std::string& properties) const {
    perform("CreateInstance", "<IPARAMVALUE NAME=\"NewInstance\"><INSTANCE CLASSNAME=\"" + className + "\">" +
                                  properties + "</INSTANCE></IPARAMVALUE>");
  }
  void remove(const std::string& name) const {
    perform("DeleteInstance", "<IPARAMVALUE NAME=\"InstanceName\">" + name + "</IPARAMVALUE>");
  }
  /// Nobody answers at its address.
  void makeListener(const std::string& name) const {
    create(kListenerClass, property("Name", name) + property("Destination", "http://127.0.0.1:1/" + name));
    create("CIM_IndicationSubscription", ends(name, "PROPERTY.REFERENCE", ">"));
  }
  void removeListener(const std::string& name) const {
    remove("<INSTANCENAME CLASSNAME=\"CIM_IndicationSubscription\">" + ends(name, "KEYBINDING", ">") +
           "</INSTANCENAME>");
    remove(nameOf(kListenerClass, name));
  }

  std::optional<Unit> unit;
};

/// Though alerts wait for all of them.
TEST_F(Listeners, AreDeletedInATimeThatDoesNotGrowWithAllThatWaits) {
  create(kFilterClass, property("Name", "all") + property("Query", "SELECT * FROM ZEB_EthernetIndication") +
                           property("QueryLanguage", "WQL"));
  for (int i = 0; i < kListeners; ++i) {
    ASSERT_NO_FATAL_FAILURE(makeListener("l" + std::to_string(i)));
  }
  for (int i = 0; i < 4; ++i) {
    ASSERT_EQ(std::system(i % 2 == 0 ? "ip link set there down" : "ip link set there up"), 0);
    std::this_thread::sleep_for(std::chrono::milliseconds(700));
  }
  const auto queue = std::filesystem::path("/run/state/delivery.db");
  const auto begin = Clock::now();
  for (int i = 0; i < kListeners; ++i) {
    ASSERT_NO_FATAL_FAILURE(removeListener("l" + std::to_string(i)));
  }
  const std::chrono::duration<double> took = Clock::now() - begin;
  std::cout << kListeners << " listeners deleted in " << took.count() << " s\n";
  EXPECT_LT(took.count(), 5);
  unit->stop();
  EXPECT_LT(std::filesystem::file_size(queue), 1'000'000U);
}

}  // namespace
}  // namespace ZebManager
