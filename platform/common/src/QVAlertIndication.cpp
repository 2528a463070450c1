#include "common/QVAlertIndication.h"

namespace ZEB {

void QVAlertIndication::setSummary(const std::string& summary) {
  set("Summary", summary);
}
void QVAlertIndication::setEventCategory(int category) {
  set("EventCategory", static_cast<std::uint16_t>(category));
}
void QVAlertIndication::setOtherEventCategory(const std::string& category) {
  set("OtherEventCategory", category);
}
void QVAlertIndication::setNetworkIPAddress(const CmpiCpp::CmpiContext& context) {
  if (const auto address = context.getText(kNetworkAddressEntry)) set("NetworkIPAddress", *address);
}
void QVAlertIndication::setEventSubCategory(int subCategory) {
  set("EventSubCategory", static_cast<std::uint16_t>(subCategory));
}
void QVAlertIndication::setHWPhysicalLocation(const std::string& location) {
  set("HWPhysicalLocation", location);
}
void QVAlertIndication::setHWEncodingPhysicalLocation(const std::string& location) {
  set("HWEncodingPhysicalLocation", location);
}
void QVAlertIndication::setHWPartNumber(const std::string& partNumber) {
  set("HWPartNumber", partNumber);
}
void QVAlertIndication::setUserComment(const std::string& comment) {
  set("UserComment", comment);
}

}  // namespace ZEB
