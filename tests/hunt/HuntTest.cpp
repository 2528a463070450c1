#include <dlfcn.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <optional>
#include <set>

#include "AlertModel.h"
#include "History.h"
#include "InstanceText.h"
#include "Plugin.h"
#include "ProviderFixture.h"
#include "provider/EntryPoints.h"

namespace ZEB::test {
namespace {

using CmpiCpp::CmpiInstance;

/// What a plug-in serves: the values by instance and property.
using Served = std::map<std::string, std::string>;

/// Every instance and association that an instance interface enumerates.
Served servedBy(FakeBroker& broker, CMPIInstanceMI* instances) {
  Served served;
  auto names = objectClasses();
  names.insert(names.end(), associationClasses().begin(), associationClasses().end());
  for (const std::string& name : names) {
    FakeBroker::Call call(broker);
    instances->ft->enumerateInstances(instances, &call.context(), &call.result(),
                                      call.path({"root/jxv", CmpiCpp::CmpiName(name)}), nullptr);
    std::size_t number = 0;
    for (const CmpiInstance& instance : call.result().instances) {
      const std::string start = instance.path().str() + " #" + std::to_string(number++) + " ";
      for (const auto& [property, value] : propertiesOf(instance)) served[start + property] = value;
    }
  }
  return served;
}

/// The plug-in as it is when it is loaded now, from a file: beside the one that is linked in.
Served servedByANewOne() {
  FakeBroker broker;
  void* library = dlopen(ZEB_PLUGIN, RTLD_NOW | RTLD_LOCAL);
  if (!library) throw std::runtime_error(dlerror());
  const auto create =
      reinterpret_cast<decltype(&_Generic_Create_InstanceMI)>(dlsym(library, "_Generic_Create_InstanceMI"));
  Served served;
  {
    FakeBroker::Call call(broker);
    CMPIInstanceMI* instances = create(broker.get(), &call.context(), "ZEBEthernetPort", nullptr);
    served = servedBy(broker, instances);
    instances->ft->cleanup(instances, &call.context(), 1);
  }
  dlclose(library);
  return served;
}

/// What is remembered shows in when a port changed last, and in that what has turned degraded while it was
/// watched is in error.
bool mayDiffer(const std::string& what, const std::string& anew, const std::string& lived) {
  static const std::set<std::pair<std::string, std::string>> kTurned{
      {"uint16[] {3}", "uint16[] {6}"},
      {"uint16 10", "uint16 20"},
      {"string[] {\"Degraded\"}", "string[] {\"Error\"}"}};
  return what.ends_with(" TimeOfLastStateChange") || kTurned.contains({anew, lived});
}

class Hunt : public ProviderTest {
 public:
  /// Every plug-in opens its stores, and nobody waits for a disk here.
  static void SetUpTestSuite() { setenv("TMPDIR", "/dev/shm", 1); }
  static void TearDownTestSuite() { unsetenv("TMPDIR"); }

 protected:
  /// What went wrong; nothing when nothing did.
  std::optional<std::string> play(const History& history) {
    Machine machine = firstMachine();
    const auto file = folder / "machine.json";
    std::filesystem::remove_all(folder / "store");
    machine.play(file);
    configure("ZEB_LINK_SETTLE_SECONDS", "0");
    configure("ZEB_SOURCE_FILE", file.string());
    FakeBroker own;
    Long lived(own);
    AlertModel model(machine);
    bool spoilt = false;
    std::size_t step = 0;
    for (const Step& next : history) {
      ++step;
      if (apply(next, machine)) {
        if (!spoilt) machine.play(file);
      } else if (next.kind == Step::Kind::Spoil) {
        spoilt = !spoilt;
        if (spoilt) Machine::spoil(file);
        if (!spoilt) machine.play(file);
      } else if (next.kind == Step::Kind::Request) {
        lived.request(next.which);
      } else if (next.kind == Step::Kind::Pass) {
        const auto sent = lived.pass();
        const auto expected = spoilt ? std::vector<Alert>{} : model.pass(machine);
        std::string wrong = differences(expected, sent);
        if (wrong.empty() && !spoilt) wrong = differences(servedByANewOne(), lived.serves());
        if (!wrong.empty()) return "step " + std::to_string(step) + ":\n" + wrong;
      }
    }
    return std::nullopt;
  }

  /// Leaves out what does not matter, again and again.
  History shortest(History history) {
    for (std::size_t chunk = history.size() / 2; chunk > 0; chunk /= 2) {
      for (std::size_t i = 0; i + chunk <= history.size();) {
        History less = history;
        less.erase(less.begin() + static_cast<std::ptrdiff_t>(i),
                   less.begin() + static_cast<std::ptrdiff_t>(i + chunk));
        if (play(less)) {
          history = std::move(less);
        } else {
          i += chunk;
        }
      }
    }
    return history;
  }

  void hunt(std::uint64_t seed, std::size_t steps) {
    const History history = randomHistory(seed, steps);
    if (!play(history)) return;
    const History least = shortest(history);
    std::string text;
    for (const Step& step : least) text += "  " + step.text() + "\n";
    ADD_FAILURE() << "seed " << seed << ", shortest history:\n" << text << *play(least);
  }

 private:
  /// The plug-in that lives through it all.
  class Long {
   public:
    explicit Long(FakeBroker& broker) : _broker(broker) {
      FakeBroker::Call call(broker);
      _instances = _Generic_Create_InstanceMI(broker.get(), &call.context(), "ZEBEthernetPort", nullptr);
      _methods = _Generic_Create_MethodMI(broker.get(), &call.context(), "ZEBEthernetPort", nullptr);
      _indications = _Generic_Create_IndicationMI(broker.get(), &call.context(), "ZEBEthernetPort", nullptr);
      call.enableIndications(_indications);
      openEveryGate();
    }
    ~Long() {
      FakeBroker::Call call(_broker);
      _instances->ft->cleanup(_instances, &call.context(), 1);
      _methods->ft->cleanup(_methods, &call.context(), 1);
      _indications->ft->cleanup(_indications, &call.context(), 1);
    }
    Long(const Long&) = delete;
    Long& operator=(const Long&) = delete;

    Served serves() { return servedBy(_broker, _instances); }
    void request(std::uint32_t which) {
      const auto& names = objectClasses();
      enumerate(names[which % names.size()]);
    }
    /// What a pass sends.
    std::vector<Alert> pass() {
      const std::size_t before = _broker.deliveries().size();
      {
        FakeBroker::Call call(_broker);
        _methods->ft->invokeMethod(_methods, &call.context(), &call.result(),
                                   call.path({"root/jxv", "ZEB_AutoStartEthernetPort"}), "PerformWork",
                                   call.args(), call.args());
      }
      std::vector<Alert> alerts;
      const auto deliveries = _broker.deliveries();
      for (std::size_t i = before; i < deliveries.size(); ++i)
        alerts.push_back(alertOf(deliveries[i].indication));
      std::ranges::sort(alerts);
      return alerts;
    }

   private:
    std::vector<CmpiInstance> enumerate(const std::string& className) {
      FakeBroker::Call call(_broker);
      _instances->ft->enumerateInstances(_instances, &call.context(), &call.result(),
                                         call.path({"root/jxv", CmpiCpp::CmpiName(className)}), nullptr);
      return call.result().instances;
    }
    void openEveryGate() {
      CmpiInstance settings = enumerate("ZEB_EthEventSettings").at(0);
      std::vector<std::string> names{"PollInterval"};
      settings.addProperty("PollInterval", std::uint32_t{0});
      for (const char* gate :
           {"ActiveAdapterCountChanged", "MemberRoleChanged", "MemberStatusChanged", "MemberJoinedTeam",
            "MemberLeftTeam", "InterfaceAvailable", "InterfaceUnAvailable"}) {
        settings.addProperty(gate, true);
        names.emplace_back(gate);
      }
      FakeBroker::Call call(_broker);
      call.modify(_instances, settings.path(), settings, names);
    }
    /// The text in the description's parentheses; for a port the address of the one that sent it.
    Alert alertOf(const CmpiInstance& indication) {
      const std::string element = indication.getProperty("AlertingManagedElement").asString();
      const int event = std::stoi(indication.getProperty("EventID").asString());
      if (element.find("ZEB_EthernetPort.") != std::string::npos) {
        for (const CmpiInstance& port : enumerate("ZEB_EthernetPort")) {
          if (port.path().str() != element) continue;
          std::string address = port.getProperty("PermanentAddress").asString();
          for (std::size_t i = 2; i < address.size(); i += 3) address.insert(i, ":");
          std::ranges::transform(address, address.begin(), [](unsigned char c) { return std::tolower(c); });
          return {event, address};
        }
      }
      const std::string text = indication.getProperty("Description").asString();
      const std::size_t open = text.rfind('(');
      return {event, text.substr(open + 1, text.size() - open - 2)};
    }

    FakeBroker& _broker;
    CMPIInstanceMI* _instances;
    CMPIMethodMI* _methods;
    CMPIIndicationMI* _indications;
  };

  static std::string differences(const std::vector<Alert>& expected, const std::vector<Alert>& sent) {
    std::vector<Alert> missing, surplus;
    std::ranges::set_difference(expected, sent, std::back_inserter(missing));
    std::ranges::set_difference(sent, expected, std::back_inserter(surplus));
    std::string text;
    for (const auto& [event, what] : missing)
      text += "not sent: " + std::to_string(event) + " " + what + "\n";
    for (const auto& [event, what] : surplus) text += "sent: " + std::to_string(event) + " " + what + "\n";
    return text;
  }
  static std::string differences(const Served& anew, const Served& lived) {
    std::string text;
    for (const auto& [what, value] : anew) {
      const auto other = lived.find(what);
      if (other == lived.end()) {
        text += what + ": " + value + ", not served\n";
      } else if (value != other->second && !mayDiffer(what, value, other->second)) {
        text += what + ": " + value + ", served " + other->second + "\n";
      }
    }
    for (const auto& [what, value] : lived) {
      if (!anew.contains(what)) text += what + ": nothing, served " + value + "\n";
    }
    return text;
  }
};

TEST_F(Hunt, ThroughRandomHistories) {
  if (const char* seed = std::getenv("ZEB_HUNT_SEED")) {
    hunt(std::strtoull(seed, nullptr, 10), 60);
    return;
  }
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  constexpr std::uint64_t kFew = 30;
#else
  constexpr std::uint64_t kFew = 200;
#endif
  const std::uint64_t histories = std::getenv("ZEB_SOAK") ? 10000 : kFew;
  for (std::uint64_t seed = 1; seed <= histories && !HasFailure(); ++seed) hunt(seed, 60);
}

}  // namespace
}  // namespace ZEB::test
