#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "cmpicpp/CmpiObjectPath.h"
#include "common/ClassNames.h"
#include "common/Logger.h"

namespace ZEB {

/// What the site configured: one commented text file, `/etc/qv-zeb/qv-zeb.toml` unless `ZEB_CONFIG` names
/// another, and above it an environment variable for every key. Every value has a default; an unknown key or
/// a bad value is a warning that names the line and the key, and the default holds.
struct Configuration {
  std::string sourceFile;       ///< recorded snapshot to serve instead of this host; ZEB_SOURCE_FILE
  bool includeVirtual = false;  ///< virtual interfaces count as ports; ZEB_INCLUDE_VIRTUAL
  std::string storeDirectory = kDataStoreDirectory;  ///< where data stores are kept; ZEB_STORE_DIR
  std::string runDirectory = "/run/qv-zeb/";  ///< where status is posted; empty for nowhere; ZEB_RUN_DIR
  std::string recordsFile;             ///< indication records; empty for the installed one; ZEB_RECORDS
  std::string logTarget = "syslog";    ///< "syslog", "stderr" or "none"; ZEB_LOG_TARGET
  LogLevel logLevel = LogLevel::Warn;  ///< "error", "warn" or "info"; ZEB_LOG_LEVEL
  bool autostart = true;               ///< the worker runs by itself; ZEB_AUTOSTART
  bool perfmon = false;                ///< operations are counted and timed; ZEB_PERFMON
  /// Every pass while indications are enabled ends where it would send a heartbeat; ZEB_HEARTBEAT
  bool heartbeat = false;
  /// For how long an interface that was switched on may wait for its link before it counts as without one;
  /// 0 for not at all; ZEB_LINK_SETTLE_SECONDS
  std::chrono::seconds linkSettle{6};
  /// Where associations with the computer system lead, in place of the plug-in's own name for it;
  /// ZEB_COMPUTER_SYSTEM_PATH
  std::optional<CmpiCpp::CmpiObjectPath> computerSystemPath;

  /// What a value was replaced for, and why, in the order of the file.
  std::vector<std::string> warnings;

  /// Reads file and environment anew. A missing file is no warning.
  static Configuration load();

  /// The process's configuration, read on first use and kept until `reset`. Safe from several threads.
  static std::shared_ptr<const Configuration> current();

  /// Forgets what `current` kept, so that the next use reads anew.
  static void reset();
};

}  // namespace ZEB
