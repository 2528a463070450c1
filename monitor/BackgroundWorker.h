#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "provider/ZEBEthernetPortProvider.h"

namespace ZEB {

class ZEB_EthEventSettings;
class ZEB_EthernetCollection;

/// One pass of the provider's periodic work, on the thread that asked for it: reports what has changed since
/// the pass before. Passes never run two at a time, and never beside the handling of a link message.
class ZEBEthernetPortProvider::BackgroundWorker {
 public:
  BackgroundWorker(ZEBEthernetPortProvider& provider, const CmpiCpp::CmpiContext& context);

  /// 0, or 4 when the processing of events failed. What is thrown ends the pass where it stands. How it went
  /// is posted.
  std::uint32_t pass();

 private:
  std::uint32_t work();
  Health::Surroundings surroundings() const;
  void reportCollectionState();
  /// Whether this pass has to look at the data; sets the time of the last poll.
  bool pollIsDue();
  /// Brings data and instances up to date; whether there was an event in what was seen.
  bool refresh();
  bool rebuildIsDue() const;
  void rebuild(const std::vector<std::string>& added, const std::vector<std::string>& removed);
  void replaceInstances();
  /// Alerts of teams that came or went; the failures are logged in the words of `failure`.
  void reportPresence(const std::vector<std::string>& names, int eventId, const char* failure);
  int sendTeamPresenceIndication(const std::string& name, int eventId);
  int processIndications();
  void processPort(CmpiManagedInstance& instance);
  void processTeam(CmpiManagedInstance& instance);
  void sendHeartbeat();
  void postStatus();

  template <class Visit>
  void forEachCollection(Visit&& visit);

  ZEBEthernetPortProvider& _provider;
  const CmpiCpp::CmpiContext& _context;
  const Logger& _logger;
  bool _skipped = false;  ///< nothing was due
};

}  // namespace ZEB
