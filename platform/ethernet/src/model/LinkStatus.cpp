#include "model/LinkStatus.h"

#include <linux/if.h>

#include "model/LinkTexts.h"

namespace ZEB::ethernet {
namespace {

constexpr std::uint8_t kMiiUp = 0;
constexpr std::uint8_t kMiiGoingDown = 1;
constexpr std::uint8_t kMiiDown = 2;
constexpr std::uint8_t kMiiComingBack = 3;

/// The operational state follows the carrier a moment later: "down" beside a carrier is the state from
/// before.
bool isImpaired(std::optional<std::uint8_t> operState) {
  return operState == IF_OPER_TESTING || operState == IF_OPER_LOWERLAYERDOWN || operState == IF_OPER_DORMANT;
}

std::string speedText(const EthtoolFacts& ethtool) {
  if (!ethtool.speed) return "";
  std::string text = ", " + std::to_string(*ethtool.speed) + " Mbit/s";
  if (ethtool.fullDuplex) text += *ethtool.fullDuplex ? " full duplex" : " half duplex";
  return text;
}

/// One that was just switched on counts as off still.
operationalStatus withoutLink(const LinkFacts& link) {
  const bool waits = link.settles != Settles::No && !link.hadCarrier;
  return waits ? operationalStatus::Dormant : operationalStatus::Error;
}

}  // namespace

std::optional<bool> isAdministrativelyUp(const LinkFacts& link) {
  if (!link.flags) return std::nullopt;
  return (*link.flags & IFF_UP) != 0;
}

std::optional<bool> hasCarrier(const LinkFacts& link) {
  if (link.carrier) return link.carrier;
  if (!link.flags) return std::nullopt;
  return (*link.flags & IFF_LOWER_UP) != 0;
}

bool hasWholeLink(const LinkFacts& link) {
  if (!hasCarrier(link).value_or(false) || link.operState == IF_OPER_LOWERLAYERDOWN) return false;
  return !link.bondMember || link.bondMember->miiStatus.value_or(kMiiUp) == kMiiUp;
}

std::optional<operationalStatus> portStatus(const LinkFacts& link) {
  const auto up = isAdministrativelyUp(link);
  const auto carrier = hasCarrier(link);
  if (!up) return std::nullopt;
  if (!*up) return operationalStatus::Dormant;
  if (!*carrier) return withoutLink(link);
  return isImpaired(link.operState) ? operationalStatus::Degraded : operationalStatus::OK;
}

std::optional<operationalStatus> vlanStatus(const LinkFacts& link) {
  const auto status = portStatus(link);
  const bool lowerDown = link.operState == IF_OPER_LOWERLAYERDOWN;
  return status && *status != operationalStatus::Dormant && lowerDown ? withoutLink(link) : status;
}

std::optional<operationalStatus> memberStatus(const LinkFacts& link) {
  const auto status = portStatus(link);
  if (!status || *status == operationalStatus::Dormant || *status == operationalStatus::Error) return status;
  if (link.settles != Settles::No) return operationalStatus::Dormant;
  const auto mii = link.bondMember ? link.bondMember->miiStatus : std::nullopt;
  if (mii == kMiiDown) return operationalStatus::Error;
  if (mii == kMiiGoingDown || mii == kMiiComingBack) return operationalStatus::Degraded;
  return status;
}

std::optional<std::string> linkMessage(const LinkFacts& link) {
  const auto status = portStatus(link);
  if (!status) return std::nullopt;
  switch (*status) {
    case operationalStatus::Dormant:
      return isAdministrativelyUp(link).value_or(false) ? "no link yet" : "administratively down";
    case operationalStatus::OK:
      return "link up" + speedText(link.ethtool);
    case operationalStatus::Degraded:
      return std::string("link up, but ") + operStateText(*link.operState);
    default:
      break;
  }
  if (link.ethtool.extendedState) {
    return "no link: " + extendedStateText(*link.ethtool.extendedState, link.ethtool.extendedSubstate);
  }
  return link.operState == IF_OPER_LOWERLAYERDOWN ? "no link: lower layer down" : "no link";
}

}  // namespace ZEB::ethernet
