#include "provider/ZEBEthernetPortProvider.h"

#include <cstdlib>

#include "cmpicpp/CmpiStatus.h"
#include "common/AutoMutex.h"
#include "common/Configuration.h"
#include "common/Handover.h"
#include "common/Physloc.h"
#include "common/ServedState.h"
#include "common/ZEBUtil.h"
#include "ethernet/Sources.h"
#include "monitor/Reports.h"
#include "monitor/ZEB_EthEventSettings.h"
#include "monitor/ZEB_EthernetCollection.h"
#include "provider/Names.h"

namespace ZEB {
namespace {

/// The background work of this provider, as `setStop` knows it.
constexpr int kBackgroundWork = 3;
/// Names the file of what is handed over. Not the site's to set.
constexpr char kHandoverVariable[] = "ZEB_HANDOVER";

/// One question about another host is answered without this one's kernel, which may be out of reach: without
/// a socket the thread ends the process.
bool hearsTheKernel() {
  return Configuration::current()->sourceFile.empty() || !ethernet::isForOneQuestion();
}

}  // namespace

ZEBEthernetPortProvider::ZEBEthernetPortProvider(const CmpiCpp::CmpiBroker& broker, const Logger& logger)
    : _logger(logger), _collection(logger), _linkWatch(std::make_shared<LinkWatch>()), _health(logger) {
  _logger.info("cxtor()");
  ZEBUtil::setStop(_logger, 0, kBackgroundWork);
  pthread_mutex_init(&_collectionMutex, nullptr);
  ZEBUtil::setBroker(broker);
  ZEBUtil::forgetHostName();
  for (const std::string& warning : Configuration::current()->warnings) _logger.warn("%s", warning);
  _indications.heartbeat = ZEBUtil::HeartBeatIndicationsEnabled();

  _logger.info("calling makeDataStore...");
  _dataStore = makeDataStore(std::string(kProviderName.view()));
  if (!_dataStore) _logger.error("unable to open datastore");

  ZEBPhysloc::init(ZEBPhysloc::kThisChassis);
  if (hearsTheKernel()) StartNetlinkThread();
  watchSource();
  {
    const std::lock_guard lock(_linkWatch->mutex);
    makeDataSources();
  }
  _cmpiManagedInstanceFactory();
  Handover::current().open(std::getenv(kHandoverVariable));
  noteReports(_collection);
  checkRecording();
  // A kernel that did not answer may do so in a moment.
  if (!_ethMRA->failureText().empty()) LinkWatch::lookAgain();
}

ZEBEthernetPortProvider::~ZEBEthernetPortProvider() {
  _logger.info("dxtor() unloading provider");
  {
    // The thread may outlive us when it cannot be stopped; it must not find the sources then.
    const std::lock_guard lock(_linkWatch->mutex);
    _linkWatch->ethMRA = nullptr;
    _linkWatch->ethTeamMRA = nullptr;
  }
  _recordingWatch.reset();
  _changeWatch.reset();
  _netlinkThread.reset();
  _dataStore.reset();
  _ethMRA.reset();
  _ethTeamMRA.reset();
  ZEBPhysloc::close();
  pthread_mutex_destroy(&_collectionMutex);
}

void ZEBEthernetPortProvider::StartNetlinkThread() {
  _netlinkThread.emplace(_logger, [watch = _linkWatch](int socket) { return watch->handleMessage(socket); });
  _netlinkThread->start();
}

// A recording that cannot be played back is a mistake of whoever configured it, who has to be told; a host
// whose kernel does not answer is served all the same.
void ZEBEthernetPortProvider::checkRecording() const {
  const std::string trouble = _ethMRA->failureText();
  if (Configuration::current()->sourceFile.empty() || trouble.empty()) return;
  throw CmpiCpp::CmpiStatus(CMPI_RC_ERR_FAILED, trouble);
}

// A recording is another host: messages of this one say nothing of it. Who calls the worker by itself looks
// when it likes.
void ZEBEthernetPortProvider::watchSource() {
  const auto configuration = Configuration::current();
  if (configuration->sourceFile.empty()) {
    _changeWatch.emplace(_logger,
                         [watch = _linkWatch](const LayerChange& change) { watch->handleChange(change); });
  } else if (configuration->autostart) {
    _recordingWatch.emplace(_linkWatch);
  }
}

void ZEBEthernetPortProvider::makeDataSources() {
  const CmpiCpp::CmpiContext context;
  auto ethMRA = ethernetMRAFactory(_logger, context);
  auto ethTeamMRA = ethernetTeamMRAFactory(_logger);
  _ethMRA = std::move(ethMRA);
  _ethTeamMRA = std::move(ethTeamMRA);
  _linkWatch->ethMRA = _ethMRA.get();
  _linkWatch->ethTeamMRA = _ethTeamMRA.get();
}

Monitored ZEBEthernetPortProvider::monitored() {
  return {.logger = _logger,
          .nameSpace = std::string(kNameSpace.view()),
          .linkWatch = *_linkWatch,
          .health = _health,
          .indications = _indications,
          .mutex = _collectionMutex,
          .instances = _collection,
          .settings = _eventSettings,
          .followStores =
              [this] {
                if (ZEB_EthEventSettings* settings = _eventSettings) settings->follow();
                followFilters();
              },
          .memories = _memories,
          .arrivals = _arrivals,
          .rebuild =
              [this] {
                makeDataSources();
                _cmpiManagedInstanceFactory();
              }};
}

void ZEBEthernetPortProvider::followFilters() {
  if (!_dataStore) return;
  for (const std::uint32_t i : _collection.ofClass(ZEB_EthernetCollection::kClassName)) {
    static_cast<ZEB_EthernetCollection&>(_collection.getManagedInstance(i)).follow(_collection, *_dataStore);
  }
}

CmpiCpp::CmpiBroker ZEBEthernetPortProvider::getBroker() const {
  return ZEBUtil::getBroker();
}

void ZEBEthernetPortProvider::cleanup(const CmpiCpp::CmpiContext& /*context*/, bool /*terminating*/) {
  ZEBUtil::setStop(_logger, 1, kBackgroundWork);
}

void ZEBEthernetPortProvider::goOn() {
  if (ZEBUtil::stopRequested()) ZEBUtil::setStop(_logger, 0, kBackgroundWork);
}

void ZEBEthernetPortProvider::enableIndications(const CmpiCpp::CmpiContext& /*context*/) {
  if (Handover::current().pending()) takeOver();
  _indications.readyToSendIndications = true;
  goOn();
}

// Passes before this one have alerted nobody. None may come between the two.
void ZEBEthernetPortProvider::takeOver() {
  const std::lock_guard passes(_linkWatch->mutex);
  const AutoMutex lock(_collectionMutex);
  resumeReports(_collection);
  ServedState::changed();
  _linkWatch->unfinished = true;
  _indications.readyToSendIndications = true;
  LinkWatch::lookAgain();
}

void ZEBEthernetPortProvider::disableIndications(const CmpiCpp::CmpiContext& /*context*/) {
  _indications.readyToSendIndications = false;
}

}  // namespace ZEB
