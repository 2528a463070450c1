#pragma once

#include <string>

#include "cmpicpp/CmpiContext.h"
#include "cmpicpp/CmpiName.h"
#include "common/IndicationDB.h"
#include "common/Logger.h"
#include "common/Physloc.h"

namespace ZEB {

class QVAlertIndication;
struct IndDBRec;

/// Turns an event into an alert indication and hands it to the object manager. Made for each occasion, used
/// on one thread.
class ZEB_EthernetIndication {
 public:
  static constexpr CmpiCpp::NameLiteral kClassName = "ZEB_EthernetIndication";

  ZEB_EthernetIndication(const Logger& logger, const std::string& nameSpace);
  ~ZEB_EthernetIndication();
  ZEB_EthernetIndication(const ZEB_EthernetIndication&) = delete;
  ZEB_EthernetIndication& operator=(const ZEB_EthernetIndication&) = delete;

  /// Sends the alert of that event. `managedElement` is the path of what raised it, `detail` completes the
  /// description; a sub-category of 0, `BMC_physloc_NULL` and empty texts leave their properties out. An
  /// event without a record and a delivery that is refused are logged, and the caller is not told.
  void send(int eventId, const std::string& managedElement, const std::string& detail, int subCategory,
            const physloc_t& location, const std::string& partNumber, const std::string& userComment,
            const CmpiCpp::CmpiContext& context);

 private:
  void deliver(const QVAlertIndication& indication, const CmpiCpp::CmpiContext& context);

  const std::string _nameSpace;
  Logger _logger;
  IndicationDB _records;
};

}  // namespace ZEB
