// Where alerts come from.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>

#include "broker/IndicationQueue.h"

namespace ZebManager {

class ServiceLink;
class Session;

/// Somebody listens for as long as this lives.
class AlertSource {
 public:
  AlertSource() = default;
  AlertSource(const AlertSource&) = delete;
  AlertSource& operator=(const AlertSource&) = delete;
  virtual ~AlertSource() = default;

  /// Null when none comes within the time, or the wait was ended. Throws ManagerError when none can come any
  /// more.
  virtual std::unique_ptr<DeliveredIndication> next(std::chrono::milliseconds patience) = 0;
};

/// Alerts that satisfy a query: of the service, when there is a link to it, else of the plug-in, which is
/// loaded. Throws QueryError for a query that cannot be met, and ManagerError.
std::unique_ptr<AlertSource> openAlerts(Session& session, ServiceLink* service, const std::string& query);

}  // namespace ZebManager
