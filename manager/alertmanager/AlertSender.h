// Sends what is open, and what has ended, to every Alertmanager.
#pragma once

#include <memory>
#include <string>

#include "alertmanager/AlertTable.h"
#include "alertmanager/AlertmanagerSettings.h"
#include "indications/PostSettings.h"

namespace ZebManager {

/// Each URL gets what has changed at once, everything that is open again and again, and what has ended until
/// it has acknowledged that. One that fails is tried again after pauses that grow, and then gets what is so
/// at that time; a line of the log says it when it fails first, with what to do, and one when it is well
/// again. URLs do not wait for each other. Sending is a thread of this object's own.
class AlertSender {
 public:
  using DayClock = DayTime (*)();
  static DayTime timeOfDay();

  /// `posts`: pauses and time limits. The table has to outlive this object. Throws ManagerError.
  AlertSender(const AlertmanagerSettings& settings, const PostSettings& posts, AlertTable& table, LogLine log,
              DayClock clock = &timeOfDay);
  AlertSender(const AlertSender&) = delete;
  AlertSender& operator=(const AlertSender&) = delete;
  ~AlertSender();

  /// The table has changed.
  void wake();

 private:
  class Worker;
  std::unique_ptr<Worker> _worker;
};

}  // namespace ZebManager
