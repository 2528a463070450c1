#include "support/CableAlert.h"

#include <regex>
#include <stdexcept>

namespace ZebManager {
namespace {

using Properties = std::map<std::string, std::string>;

Properties ofBoth(const AlertedPort& port) {
  return {{"SystemName", port.systemName},
          {"SystemCreationClassName", "ZEB_ComputerSystem"},
          {"ProviderName", "ZEBEthernetPort"},
          {"AlertingManagedElement",
           "//" + port.systemName +
               "/root/jxv:ZEB_EthernetPort.CreationClassName=\"ZEB_EthernetPort\",SystemCreationClassName="
               "\"ZEB_ComputerSystem\",SystemName=\"" +
               port.systemName + "\",DeviceID=\"JXV:ZEB_EthernetPort:" + std::to_string(port.number) + "\""},
          {"AlertingElementFormat", "2"},
          {"AlertType", "2"},
          {"EventCategory", "2"},
          {"EventSubCategory", "11"},
          {"HWPhysicalLocation", port.place},
          {"HWEncodingPhysicalLocation", port.encodedPlace},
          {"HWPartNumber", port.partNumber}};
}

std::string inParentheses(const AlertedPort& port) {
  return "(Ethernet port " + std::to_string(port.portOfController) + " on ethernet controller " +
         std::to_string(port.controller) + ")";
}

Properties with(Properties properties, const Properties& more) {
  properties.insert(more.begin(), more.end());
  std::erase_if(properties, [](const auto& property) { return property.second.empty(); });
  return properties;
}

Properties cablePulled(const AlertedPort& port) {
  return with(
      ofBoth(port),
      {{"EventID", "2"},
       {"PerceivedSeverity", "5"},
       {"Summary", "Ethernet connectivity lost"},
       {"Description", "A port or team that worked has lost its link. " + inParentheses(port)},
       {"ProbableCause", "30"},
       {"ProbableCauseDescription",
        "The signal from the other end is gone or impaired: a cable was pulled, or the switch or its port "
        "went down."},
       {"UserComment", "no link"},
       {"RecommendedActions",
        "Check whether somebody pulled the cable or is working at the switch.\n"
        "Check the switch: is it powered, and is the port enabled and free of errors?\n"
        "Check the cable and the transceivers at both ends, and reseat them.\n"
        "If several ports went down at the same time, look for what they share: switch, patch panel, "
        "adapter.\n"
        "Look for driver messages about the interface in the kernel log ('dmesg')."}});
}

Properties cablePutBack(const AlertedPort& port) {
  return with(ofBoth(port),
              {{"EventID", "3"},
               {"PerceivedSeverity", "2"},
               {"Summary", "Ethernet connectivity restored"},
               {"Description", "A port or team has its link back. " + inParentheses(port)},
               {"ProbableCause", "59"},
               {"ProbableCauseDescription", "The link that was lost is up again."},
               {"UserComment", port.link},
               {"RecommendedActions",
                "No action is needed if the interruption was planned.\n"
                "Otherwise compare the times of loss and return with the log of the switch.\n"
                "If the link comes and goes, replace the cable or transceiver before it fails for good."}});
}

/// Of the properties that are different each time, what they have to look like.
const std::map<std::string, std::regex> kChanging = {
    {"IndicationIdentifier", std::regex("JXV:ZEB_EthernetIndication:[0-9]+-[0-9]+")},
    {"IndicationTime", std::regex(R"(\d{14}\.\d{6}[+-]\d{3})")},
    {"SequenceContext", std::regex(".+")},
    {"SequenceNumber", std::regex("[0-9]+")}};

Properties lastingOf(const ReceivedExport& alert) {
  if (alert.className != "ZEB_EthernetIndication") throw std::runtime_error("a " + alert.className);
  Properties properties = alert.properties;
  for (const auto& [name, form] : kChanging) {
    if (!std::regex_match(alert[name], form)) throw std::runtime_error(name + " is '" + alert[name] + "'");
    properties.erase(name);
  }
  std::erase_if(properties, [](const auto& property) { return property.second.empty(); });
  return properties;
}

}  // namespace

std::vector<Properties> roundsOfCable(const AlertedPort& port, int count) {
  std::vector<Properties> all;
  for (; count > 0; --count) all.insert(all.end(), {cablePulled(port), cablePutBack(port)});
  return all;
}

std::vector<Properties> lasting(const std::vector<ReceivedExport>& alerts) {
  std::vector<Properties> all;
  for (const ReceivedExport& alert : alerts) all.push_back(lastingOf(alert));
  return all;
}

std::vector<int> places(const std::vector<ReceivedExport>& alerts) {
  std::vector<int> all;
  for (const ReceivedExport& alert : alerts) {
    if (alert["SequenceContext"] != alerts.front()["SequenceContext"])
      throw std::runtime_error("alerts of several sequences");
    all.push_back(std::stoi(alert["SequenceNumber"]));
  }
  return all;
}

}  // namespace ZebManager
