#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "cmpicpp/CmpiInstance.h"
#include "common/Logger.h"

namespace ZEB {

/// An indication in the making: `CIM_Indication` with its identifier, the time and the host's name set.
class CIMIndication {
 public:
  CIMIndication(Logger& logger, const std::string& className, const std::string& nameSpace);
  virtual ~CIMIndication() = default;
  CIMIndication(const CIMIndication&) = delete;
  CIMIndication& operator=(const CIMIndication&) = delete;

  /// Another one for every indication of this process. "IndicationIdentifier" tells it from those of earlier
  /// runs too.
  unsigned getId() const { return _id; }

  /// What was set so far, in the order of setting.
  const CmpiCpp::CmpiInstance& getInstance() const { return _instance; }

 protected:
  void set(CmpiCpp::CmpiName property, CmpiCpp::CmpiData value);

 private:
  unsigned _id;
  CmpiCpp::CmpiInstance _instance;
};

/// `CIM_AlertIndication`.
class CIMAlertIndication : public CIMIndication {
 public:
  /// `perceivedSeverity`: value map "PerceivedSeverity".
  CIMAlertIndication(Logger& logger, const std::string& className, const std::string& nameSpace,
                     int perceivedSeverity);

  void setDescription(const std::string& description);
  void setAlertingManagedElement(const std::string& path);
  void setAlertingElementFormat(std::uint16_t format);
  void setEventID(const std::string& eventId);
  void setAlertType(std::uint16_t type);
  void setProviderName(const std::string& name);
  void setRecommendedActions(const std::vector<std::string>& actions);
  void setSystemCreationClassName(const std::string& className);
  void setProbableCause(std::uint16_t cause);
  void setProbableCauseDescription(const std::string& description);
};

}  // namespace ZEB
