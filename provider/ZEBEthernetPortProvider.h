#pragma once

#include <pthread.h>

#include <atomic>
#include <memory>
#include <optional>

#include "cmpicpp/CmpiAssociationProvider.h"
#include "cmpicpp/CmpiIndicationProvider.h"
#include "cmpicpp/CmpiInstanceProvider.h"
#include "cmpicpp/CmpiMethodProvider.h"
#include "common/CmpiManagedInstanceCollection.h"
#include "common/DataStore.h"
#include "common/InstanceMemories.h"
#include "common/Logger.h"
#include "ethernet/ChangeWatch.h"
#include "ethernet/EthernetMRA.h"
#include "ethernet/EthernetTeamMRA.h"
#include "monitor/BackgroundWorker.h"
#include "monitor/NetlinkThread.h"
#include "monitor/RecordingWatch.h"

namespace ZEB {

/// The one provider object. Serves every CIM operation from its collection of managed instances, under the
/// collection mutex; may be called on any number of threads.
class ZEBEthernetPortProvider : public CmpiCpp::CmpiInstanceProvider,
                                public CmpiCpp::CmpiAssociationProvider,
                                public CmpiCpp::CmpiMethodProvider,
                                public CmpiCpp::CmpiIndicationProvider {
 public:
  /// Starts the netlink thread and builds every instance. What is thrown leaves nothing behind.
  ZEBEthernetPortProvider(const CmpiCpp::CmpiBroker& broker, const Logger& logger);
  ~ZEBEthernetPortProvider() override;
  ZEBEthernetPortProvider(const ZEBEthernetPortProvider&) = delete;
  ZEBEthernetPortProvider& operator=(const ZEBEthernetPortProvider&) = delete;

  CmpiCpp::CmpiBroker getBroker() const override;
  void cleanup(const CmpiCpp::CmpiContext& context, bool terminating) override;
  void goOn() override;

  void enumInstanceNames(CmpiCpp::CmpiObjectPathResult& result, const CmpiCpp::CmpiContext& context,
                         const CmpiCpp::CmpiObjectPath& classPath) override;
  void enumInstances(CmpiCpp::CmpiInstanceResult& result, const CmpiCpp::CmpiContext& context,
                     const CmpiCpp::CmpiObjectPath& classPath, CmpiCpp::CmpiPropertyList properties) override;
  void getInstance(CmpiCpp::CmpiInstanceResult& result, const CmpiCpp::CmpiContext& context,
                   const CmpiCpp::CmpiObjectPath& path, CmpiCpp::CmpiPropertyList properties) override;
  void modifyInstance(const CmpiCpp::CmpiContext& context, const CmpiCpp::CmpiObjectPath& path,
                      const CmpiCpp::CmpiInstance& instance, CmpiCpp::CmpiPropertyList properties) override;

  void associators(CmpiCpp::CmpiInstanceResult& result, const CmpiCpp::CmpiContext& context,
                   const CmpiCpp::CmpiObjectPath& path, const CmpiCpp::CmpiName& associationClass,
                   const CmpiCpp::CmpiName& resultClass, const CmpiCpp::CmpiName& role,
                   const CmpiCpp::CmpiName& resultRole, CmpiCpp::CmpiPropertyList properties) override;
  void associatorNames(CmpiCpp::CmpiObjectPathResult& result, const CmpiCpp::CmpiContext& context,
                       const CmpiCpp::CmpiObjectPath& path, const CmpiCpp::CmpiName& associationClass,
                       const CmpiCpp::CmpiName& resultClass, const CmpiCpp::CmpiName& role,
                       const CmpiCpp::CmpiName& resultRole) override;
  void references(CmpiCpp::CmpiInstanceResult& result, const CmpiCpp::CmpiContext& context,
                  const CmpiCpp::CmpiObjectPath& path, const CmpiCpp::CmpiName& resultClass,
                  const CmpiCpp::CmpiName& role, CmpiCpp::CmpiPropertyList properties) override;
  void referenceNames(CmpiCpp::CmpiObjectPathResult& result, const CmpiCpp::CmpiContext& context,
                      const CmpiCpp::CmpiObjectPath& path, const CmpiCpp::CmpiName& resultClass,
                      const CmpiCpp::CmpiName& role) override;

  void invokeMethod(CmpiCpp::CmpiMethodResult& result, const CmpiCpp::CmpiContext& context,
                    const CmpiCpp::CmpiObjectPath& path, const CmpiCpp::CmpiName& method,
                    const CmpiCpp::CmpiArgs& in, CmpiCpp::CmpiArgs& out) override;

  void enableIndications(const CmpiCpp::CmpiContext& context) override;
  void disableIndications(const CmpiCpp::CmpiContext& context) override;

 private:
  class InstanceBuild;

  void StartNetlinkThread();
  void checkRecording() const;
  /// Has the worker follow what no link message tells of.
  void watchSource();
  /// Puts new data sources in place of the ones there are, if any. The caller holds the link watch's mutex.
  void makeDataSources();
  Monitored monitored();
  /// Takes over the status filters that other processes have kept since. The instances must not be replaced
  /// meanwhile.
  void followFilters();
  /// Fills the collection from the data sources: adds, and never takes away.
  void _cmpiManagedInstanceFactory();
  void returnAutostart(CmpiCpp::CmpiInstanceResult& result);
  /// What a process before this one has reported is what the next pass compares with.
  void takeOver();

  std::unique_ptr<DataStore> _dataStore;  ///< null when it could not be opened
  Logger _logger;
  CmpiManagedInstanceCollection _collection;
  InstanceMemories _memories;  ///< of instances that a rebuild has cleared
  std::vector<std::string> _arrivals;
  /// Belongs to the collection: null until a build has made them, and again when the collection is cleared.
  std::atomic<ZEB_EthEventSettings*> _eventSettings{nullptr};
  IndicationState _indications;
  std::unique_ptr<EthernetMRA> _ethMRA;
  std::unique_ptr<EthernetTeamMRA> _ethTeamMRA;
  pthread_mutex_t _collectionMutex;
  std::shared_ptr<LinkWatch> _linkWatch;
  Health _health;  ///< under the link watch's mutex
  std::optional<NetlinkThread> _netlinkThread;
  std::optional<RecordingWatch>
      _recordingWatch;                      ///< where a recording is served and the worker runs by itself
  std::optional<ChangeWatch> _changeWatch;  ///< where the kernel is
};

}  // namespace ZEB
