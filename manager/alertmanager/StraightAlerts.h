// Alerts straight to Alertmanager, put together.
#pragma once

#include <string>

#include "alertmanager/AlertFollower.h"
#include "alertmanager/AlertSender.h"
#include "alertmanager/AlertTable.h"

namespace ZebManager {

/// Throws ManagerError when its file cannot be read.
struct StraightAlerts {
  StraightAlerts(const std::string& directory, const AlertmanagerSettings& settings,
                 const PostSettings& posts, Namespace& model, const LogLine& log)
      : table(directory, log),
        sender(settings, posts, table, log),
        follower(
            model, table, [this] { sender.wake(); }, log) {}

  AlertTable table;
  AlertSender sender;
  AlertFollower follower;
};

}  // namespace ZebManager
