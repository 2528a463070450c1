#include "monitor/alerts/ZEB_EthernetIndication.h"

#include <array>

#include "cmpicpp/CmpiMBService.h"
#include "cmpicpp/CmpiStatus.h"
#include "common/ClassNames.h"
#include "common/QVAlertIndication.h"
#include "common/ZEBUtil.h"
#include "monitor/alerts/Events.h"

namespace ZEB {
namespace {

/// The managed element is given by its object path.
constexpr std::uint16_t kElementIsObjectPath = 2;

std::string encoded(const physloc_t& location) {
  std::array<char, 64> text{};
  return BMC_physloc_to_str(location, text.data(), text.size());
}

std::string parenthesized(const std::string& detail) {
  return detail.empty() ? detail : "(" + detail + ")";
}

Logger openingLogger(Logger logger) {
  logger.info("cxtor");
  logger.info("Creating Ethernet Indication DB");
  return logger;
}

}  // namespace

ZEB_EthernetIndication::ZEB_EthernetIndication(const Logger& logger, const std::string& nameSpace)
    : _nameSpace(nameSpace),
      _logger(openingLogger(classLogger(logger, kClassName.view()))),
      _records(_logger, std::string(kClassName.view())) {}

ZEB_EthernetIndication::~ZEB_EthernetIndication() {
  _logger.info("dxtor");
}

void ZEB_EthernetIndication::send(int eventId, const std::string& managedElement, const std::string& detail,
                                  int subCategory, const physloc_t& location, const std::string& partNumber,
                                  const std::string& userComment, const CmpiCpp::CmpiContext& context) {
  IndDBRec record;
  if (_records.getRecord(eventId, record) != 0) {
    _logger.info("No DB record for EventID: %d", eventId);
    return;
  }
  _logger.info("Send ethernet indication: %d", eventId);
  QVAlertIndication indication(_logger, std::string(kClassName.view()), _nameSpace, record.severity);

  std::string summary = record.summary;
  std::string description = record.description;
  if (eventId == kHeartbeat) {
    summary += std::to_string(indication.getId());
  } else {
    description += parenthesized(detail);
    indication.setAlertingManagedElement(managedElement);
    indication.setAlertingElementFormat(kElementIsObjectPath);
  }

  indication.setDescription(description);
  indication.setEventID(record.eventId);
  indication.setAlertType(record.alertType);
  indication.setProviderName(record.providerName);
  indication.setRecommendedActions(record.recommendedActions);
  indication.setSystemCreationClassName(std::string(kComputerSystemClass.view()));
  indication.setSummary(summary);
  indication.setEventCategory(record.category);
  if (eventId == kCollectionStateChanged) indication.setOtherEventCategory(record.otherCategory);
  indication.setProbableCause(record.probableCause);
  indication.setProbableCauseDescription(record.probableCauseDescription);
  indication.setNetworkIPAddress(context);
  if (subCategory > 0) indication.setEventSubCategory(subCategory);
  const std::string hardwareLocation = ZEBPhysloc::physlocToHWLocation(location);
  if (!hardwareLocation.empty()) indication.setHWPhysicalLocation(hardwareLocation);
  const std::string encodedLocation = encoded(location);
  if (!encodedLocation.empty()) indication.setHWEncodingPhysicalLocation(encodedLocation);
  if (!partNumber.empty()) indication.setHWPartNumber(partNumber);
  if (!userComment.empty()) indication.setUserComment(userComment);
  deliver(indication, context);
}

void ZEB_EthernetIndication::deliver(const QVAlertIndication& indication,
                                     const CmpiCpp::CmpiContext& context) {
  try {
    CmpiCpp::CmpiMBService service(ZEBUtil::getBroker(), _logger);
    service.deliverIndication(context, _nameSpace, indication.getInstance());
  } catch (const CmpiCpp::CmpiStatus& status) {
    _logger.error("indication send failure: %S", status.what());
  }
}

}  // namespace ZEB
