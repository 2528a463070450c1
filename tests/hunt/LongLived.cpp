#include "LongLived.h"

#include <algorithm>
#include <cctype>

#include "Plugin.h"
#include "provider/EntryPoints.h"

namespace ZEB::test {

using CmpiCpp::CmpiInstance;

LongLived::LongLived(FakeBroker& broker) : _broker(broker) {
  FakeBroker::Call call(broker);
  _instances = _Generic_Create_InstanceMI(broker.get(), &call.context(), "ZEBEthernetPort", nullptr);
  _methods = _Generic_Create_MethodMI(broker.get(), &call.context(), "ZEBEthernetPort", nullptr);
  _indications = _Generic_Create_IndicationMI(broker.get(), &call.context(), "ZEBEthernetPort", nullptr);
  call.enableIndications(_indications);
  openEveryGate();
}

LongLived::~LongLived() {
  FakeBroker::Call call(_broker);
  _instances->ft->cleanup(_instances, &call.context(), 1);
  _methods->ft->cleanup(_methods, &call.context(), 1);
  _indications->ft->cleanup(_indications, &call.context(), 1);
}

void LongLived::request(std::uint32_t which) {
  const auto& names = objectClasses();
  enumerate(names[which % names.size()]);
}

void LongLived::pass() {
  FakeBroker::Call call(_broker);
  _methods->ft->invokeMethod(_methods, &call.context(), &call.result(),
                             call.path({"root/jxv", "ZEB_AutoStartEthernetPort"}), "PerformWork", call.args(),
                             call.args());
}

std::vector<Alert> LongLived::sent() {
  std::vector<Alert> alerts;
  const auto deliveries = _broker.deliveries();
  for (; _told < deliveries.size(); ++_told) alerts.push_back(alertOf(deliveries[_told].indication));
  std::ranges::sort(alerts);
  return alerts;
}

std::vector<CmpiInstance> LongLived::enumerate(const std::string& className) {
  FakeBroker::Call call(_broker);
  _instances->ft->enumerateInstances(_instances, &call.context(), &call.result(),
                                     call.path({"root/jxv", CmpiCpp::CmpiName(className)}), nullptr);
  return call.result().instances;
}

void LongLived::openEveryGate() {
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
Alert LongLived::alertOf(const CmpiInstance& indication) {
  const std::string element = indication.getProperty("AlertingManagedElement").asString();
  const int event = std::stoi(indication.getProperty("EventID").asString());
  if (element.find("ZEB_EthernetPort.") != std::string::npos) {
    for (const CmpiInstance& port : enumerate("ZEB_EthernetPort")) {
      if (port.path().str() != element) continue;
      std::string address = port.getProperty("NetworkAddresses").asArray()[0].asString();
      for (std::size_t i = 2; i < address.size(); i += 3) address.insert(i, ":");
      std::ranges::transform(address, address.begin(), [](unsigned char c) { return std::tolower(c); });
      return {event, address};
    }
  }
  const std::string text = indication.getProperty("Description").asString();
  const std::size_t open = text.rfind('(');
  return {event, text.substr(open + 1, text.size() - open - 2)};
}

std::string differences(const std::vector<Alert>& expected, const std::vector<Alert>& sent) {
  std::vector<Alert> missing, surplus;
  std::ranges::set_difference(expected, sent, std::back_inserter(missing));
  std::ranges::set_difference(sent, expected, std::back_inserter(surplus));
  std::string text;
  for (const auto& [event, what] : missing) text += "not sent: " + std::to_string(event) + " " + what + "\n";
  for (const auto& [event, what] : surplus) text += "sent: " + std::to_string(event) + " " + what + "\n";
  return text;
}

}  // namespace ZEB::test
