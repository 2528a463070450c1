#pragma once

#include <string>

#include "classes/port/CollectionMember.h"
#include "cmpicpp/CmpiContext.h"
#include "monitor/alerts/EventSettings.h"

namespace ZEB {

/// What a look at a port or a team goes by.
struct Watch {
  bool indicationsEnabled;
  const EventSettings* settings;  ///< null after a build that was cut short
  const CmpiCpp::CmpiContext& context;
};

/// What the background worker knows of a port and of a team: something that looks at itself, sends the alerts
/// for what has changed since the last time, and remembers what it saw.
class StatusWatcher : public CollectionMember {
 public:
  using CollectionMember::CollectionMember;

  /// Whether the instance is to be visible from now on. On the worker's thread.
  virtual bool look(const Watch& watch) = 0;

  /// The name that its coming and going are announced by; empty where they are not.
  virtual std::string announcedName() const { return {}; }

  /// What it has reported, as a text for another process, which makes that its own. What is no such text
  /// changes nothing.
  virtual std::string report() const = 0;
  virtual void resume(const std::string& report) = 0;
};

}  // namespace ZEB
