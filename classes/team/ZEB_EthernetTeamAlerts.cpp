#include "classes/port/Escalation.h"
#include "classes/port/Known.h"
#include "classes/team/TeamChanges.h"
#include "classes/team/ZEB_EthernetTeam.h"
#include "common/Handover.h"
#include "common/Physloc.h"
#include "monitor/alerts/Events.h"
#include "monitor/alerts/IndicationSender.h"

// A team's look at itself, and the sending of the alerts that it calls for.

namespace ZEB {
namespace {

/// Teams have no part number.
constexpr const char* kPartNumber = "N/A";

TeamAlertGates gatesOf(const EventSettings& settings) {
  return {
      .memberJoined = settings.isOn(EventSetting::MemberJoinedTeam),
      .memberLeft = settings.isOn(EventSetting::MemberLeftTeam),
      .memberRoleChanged = settings.isOn(EventSetting::MemberRoleChanged),
      .memberStatusChanged = settings.isOn(EventSetting::MemberStatusChanged),
      .redundancyChanged = settings.isOn(EventSetting::MonitorRedundancySets),
      .activeCountChanged = settings.isOn(EventSetting::ActiveAdapterCountChanged),
  };
}

}  // namespace

bool ZEB_EthernetTeam::look(const Watch& watch) {
  // A build that was cut short has teams and no settings; the next pass builds again.
  if (!watch.settings) return visible();
  bool shown = false;
  manageDynamic(shown, watch.indicationsEnabled, watch.context, *watch.settings);
  return shown;
}

void ZEB_EthernetTeam::manageDynamic(bool& visible, bool indicationsEnabled,
                                     const CmpiCpp::CmpiContext& context, const EventSettings& settings) {
  logger().info("ZEB_EthernetTeam::manageDynamic()");
  logger().info("indicationsEnabled: %d", indicationsEnabled);
  visible = true;

  const EthernetTeamDataObject record = refreshed(_team);
  const State before = lastState();
  const auto status = known(record, &EthernetTeamDataObject::getTeamStatus);
  State now{escalated(status.value_or(before.status), before.status), record.getSlaves()};
  if (indicationsEnabled) sendAlerts(record, before, now, context, settings);

  {
    const std::lock_guard lock(_mutex);
    _lastState = std::move(now);
  }
  Handover::current().note(subject(), report());
}

void ZEB_EthernetTeam::sendAlerts(const EthernetTeamDataObject& record, const State& before, const State& now,
                                  const CmpiCpp::CmpiContext& context, const EventSettings& settings) {
  std::vector<TeamAlert> alerts;
  std::string teamMessage;
  if (now.status != before.status && watchesStatus()) {
    record.getTeamMessage(teamMessage);
    if (auto alert = teamStatusAlert(_teamName, before.status, now.status)) alerts.push_back(*alert);
  }
  const auto memberAlerts =
      teamMemberAlerts(logger(), _teamName, gatesOf(settings), before.slaves, now.slaves);
  alerts.insert(alerts.end(), memberAlerts.begin(), memberAlerts.end());
  if (alerts.empty()) return;

  IndicationSender sender(logger(), nameSpace());
  const std::string path = makeObjectPath().str();
  for (const TeamAlert& alert : alerts) {
    // With the last one all have been sent that the change calls for.
    if (&alert == &alerts.back())
      Handover::current().note(subject(), reportOf(now), Handover::Alert::Follows);
    sender.send(alert.eventId, path, alert.message, kTeamSubCategory, BMC_physloc_NULL, kPartNumber,
                teamMessage, context);
  }
}

}  // namespace ZEB
