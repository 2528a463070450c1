#pragma once

#include <pthread.h>

#include <atomic>
#include <cstdint>
#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

#include "cmpicpp/CmpiContext.h"
#include "common/CmpiManagedInstanceCollection.h"
#include "common/InstanceMemories.h"
#include "common/Logger.h"
#include "monitor/Health.h"
#include "monitor/LinkWatch.h"

namespace ZEB {

class ZEB_EthEventSettings;
class ZEB_EthernetCollection;

/// Whether alerts may be sent.
struct IndicationState {
  std::atomic<bool> readyToSendIndications{false};  ///< the object manager has enabled indications
  bool started = false;                             ///< a pass has found them enabled
  bool heartbeat = false;                           ///< every pass ends where it would send a sign of life
};

/// What a pass works on. It all belongs to the provider, which outlives every pass.
struct Monitored {
  const Logger& logger;
  std::string nameSpace;
  LinkWatch& linkWatch;  ///< has the data sources
  Health& health;        ///< under the link watch's mutex
  IndicationState& indications;
  pthread_mutex_t& mutex;  ///< of `instances`
  CmpiManagedInstanceCollection& instances;
  std::atomic<ZEB_EthEventSettings*>& settings;  ///< one of the instances; null while there is none
  std::function<void()> followStores;            ///< takes over what other processes have kept since
  InstanceMemories& memories;                    ///< of instances that were cleared
  std::vector<std::string>& arrivals;            ///< teams that came and were not announced yet
  std::function<void()> rebuild;                 ///< makes data sources and instances anew
};

/// One pass of the provider's periodic work, on the thread that asked for it: reports what has changed since
/// the pass before. Passes never run two at a time, and never beside the handling of a link message.
class BackgroundWorker {
 public:
  BackgroundWorker(Monitored monitored, const CmpiCpp::CmpiContext& context);

  /// 0, or 4 when the processing of events failed. What is thrown ends the pass where it stands. How it went
  /// is posted.
  std::uint32_t pass();

 private:
  using TeamsByName = std::unordered_map<std::string, CmpiManagedInstance*>;

  std::uint32_t work();
  Health::Surroundings surroundings() const;
  void reportCollectionState();
  /// Whether this pass has to look at the data; sets the time of the last poll.
  bool pollIsDue();
  /// Brings data and instances up to date; whether there was an event in what was seen.
  bool refresh();
  /// What was looked through for events needs no second look.
  void settleEvents();
  /// Comes back when reading failed, and when an interface that waits for its link has had its time.
  void arrangeNextLook();
  /// What could not be read or built has a pass of its own soon.
  void tryAgain();
  void rebuild(const std::vector<std::string>& added, const std::vector<std::string>& removed);
  void replaceInstances();
  /// Alerts of teams that came or went; the failures are logged in the words of `failure`.
  void reportPresence(const std::vector<std::string>& names, int eventId, const char* failure);
  /// Of several teams of one name the first.
  TeamsByName teamsByName();
  int sendTeamPresenceIndication(const TeamsByName& teams, const std::string& name, int eventId);
  int processIndications();
  void sendHeartbeat();
  void postStatus();

  // Null while there are none.
  EthernetMRA* ethMRA() const;
  EthernetTeamMRA* ethTeamMRA() const;

  template <class Visit>
  void forEachCollection(Visit&& visit);

  const Monitored _monitored;
  const CmpiCpp::CmpiContext& _context;
  const Logger& _logger;
  bool _skipped = false;  ///< nothing was due
  bool _unread = false;   ///< the data sources could not be read
};

}  // namespace ZEB
