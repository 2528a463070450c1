#include <ctime>

#include "classes/port/Known.h"
#include "classes/port/PortDescription.h"
#include "classes/port/ZEB_EthernetPort.h"
#include "common/Handover.h"
#include "monitor/alerts/Events.h"
#include "monitor/alerts/IndicationSender.h"

// Which change of a port's status is worth which alert, and the sending of it.

namespace ZEB {
namespace {

struct StatusAlert {
  int event;
  const char* logLine;
  bool loggedAfterSend = false;
};

constexpr StatusAlert kPortFailed{kFailed, "Send ethernet port failed indication"};
constexpr StatusAlert kPortLost{kConnectivityLost, "Send ethernet port connectivity lost indication", true};
constexpr StatusAlert kPortRestored{kConnectivityRestored, "Send ethernet port connectivity restored"};
constexpr StatusAlert kPortActivated{kActivated, "Send ethernet port activated indication"};
constexpr StatusAlert kPortDeactivated{kDeactivated, "Send ethernet port deactivated indication"};

bool isFault(operationalStatus status) {
  return status == operationalStatus::Degraded || status == operationalStatus::Error;
}

/// Null for a change that has no alert.
const StatusAlert* alertFor(operationalStatus before, operationalStatus now) {
  if (isFault(now)) return before == operationalStatus::OK ? &kPortLost : &kPortFailed;
  if (now == operationalStatus::Dormant) return &kPortDeactivated;
  if (now != operationalStatus::OK) return nullptr;
  if (before == operationalStatus::Dormant) return &kPortActivated;
  return isFault(before) ? &kPortRestored : nullptr;
}

}  // namespace

bool ZEB_EthernetPort::look(const Watch& watch) {
  bool shown = false;
  const bool monitorPorts = !watch.settings || watch.settings->isOn(EventSetting::MonitorPorts);
  manageDynamic(shown, watch.indicationsEnabled, monitorPorts, watch.context);
  return shown;
}

void ZEB_EthernetPort::manageDynamic(bool& visible, int indicationsEnabled, int monitorPorts,
                                     const CmpiCpp::CmpiContext& context) {
  logger().info("manageDynamic()");
  logger().info("indicationsEnabled: %d", indicationsEnabled);
  visible = true;

  const EthernetPort record = refreshed(_port);
  operationalStatus now = operationalStatus::Unknown;
  if (record.getPortStatus(now) != 0) return;
  const operationalStatus before = lastStatus();
  logger().info("old status: %d", before);
  logger().info("new status: %d", now);
  if (now != before) {
    if (monitorPorts != 0 && included()) {
      IndicationSender sender(logger(), nameSpace());
      if (indicationsEnabled != 0) sendStatusAlert(sender, record, before, now, context);
    } else {
      logger().info(
          "EthEventSettings MonitorPorst is %d; Port Status filter Included prop is %d. No Indications sent.",
          monitorPorts, included());
    }
  }
  rememberStatus(now);
}

void ZEB_EthernetPort::sendStatusAlert(ZEB_EthernetIndication& sender, const EthernetPort& record,
                                       operationalStatus before, operationalStatus now,
                                       const CmpiCpp::CmpiContext& context) {
  const StatusAlert* alert = alertFor(before, now);
  if (!alert) {
    // The format has no place for its arguments; the line is known by its beginning.
    logger().info("Unknown indication type status(", now, ")  _status(", before, ")");
    return;
  }
  std::string linkMessage;
  record.getPortLinkMessage(linkMessage);
  if (!alert->loggedAfterSend) logger().info(alert->logLine);
  Handover::current().note(subject(), reportOf(now, std::time(nullptr)), Handover::Alert::Follows);
  sender.send(alert->event, makeObjectPath().str(), portDescription(record, _controllerNumber),
              kPortSubCategory, _location, _partNumber, linkMessage, context);
  if (alert->loggedAfterSend) logger().info(alert->logLine);
}

}  // namespace ZEB
