#include "common/CIMAlertIndication.h"

#include <atomic>
#include <chrono>

#include "common/ZEBUtil.h"

namespace ZEB {
namespace {

std::atomic<unsigned> lastId{0};

std::uint64_t now() {
  const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
  return static_cast<std::uint64_t>(
      std::chrono::duration_cast<std::chrono::microseconds>(sinceEpoch).count());
}

CmpiCpp::CmpiArray makeArray(const std::vector<std::string>& texts) {
  CmpiCpp::CmpiArray array(texts.size(), CMPI_string);
  for (std::size_t i = 0; i < texts.size(); ++i) array.setElementAt(i, texts[i]);
  return array;
}

}  // namespace

CIMIndication::CIMIndication(Logger& /*logger*/, const std::string& className, const std::string& nameSpace)
    : _id(++lastId), _instance(CmpiCpp::CmpiObjectPath(nameSpace, className)) {
  const std::uint64_t time = now();
  set("IndicationIdentifier", "JXV:" + className + ":" + std::to_string(time) + "-" + std::to_string(_id));
  set("IndicationTime", CmpiCpp::CmpiDateTime(time, false));
  set("SystemName", ZEBUtil::getHostName());
}

void CIMIndication::set(CmpiCpp::CmpiName property, CmpiCpp::CmpiData value) {
  _instance.addProperty(std::move(property), std::move(value));
}

CIMAlertIndication::CIMAlertIndication(Logger& logger, const std::string& className,
                                       const std::string& nameSpace, int perceivedSeverity)
    : CIMIndication(logger, className, nameSpace) {
  set("PerceivedSeverity", static_cast<std::uint16_t>(perceivedSeverity));
}

void CIMAlertIndication::setDescription(const std::string& description) {
  set("Description", description);
}
void CIMAlertIndication::setAlertingManagedElement(const std::string& path) {
  set("AlertingManagedElement", path);
}
void CIMAlertIndication::setAlertingElementFormat(std::uint16_t format) {
  set("AlertingElementFormat", format);
}
void CIMAlertIndication::setEventID(const std::string& eventId) {
  set("EventID", eventId);
}
void CIMAlertIndication::setAlertType(std::uint16_t type) {
  set("AlertType", type);
}
void CIMAlertIndication::setProviderName(const std::string& name) {
  set("ProviderName", name);
}
void CIMAlertIndication::setRecommendedActions(const std::vector<std::string>& actions) {
  set("RecommendedActions", makeArray(actions));
}
void CIMAlertIndication::setSystemCreationClassName(const std::string& className) {
  set("SystemCreationClassName", className);
}
void CIMAlertIndication::setProbableCause(std::uint16_t cause) {
  set("ProbableCause", cause);
}
void CIMAlertIndication::setProbableCauseDescription(const std::string& description) {
  set("ProbableCauseDescription", description);
}

}  // namespace ZEB
