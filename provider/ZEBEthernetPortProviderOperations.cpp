#include "cmpicpp/CmpiStatus.h"
#include "common/AutoMutex.h"
#include "common/ClassNames.h"
#include "common/ServedState.h"
#include "ethernet/RefreshScope.h"
#include "monitor/BackgroundWorker.h"
#include "provider/ModifyInstance.h"
#include "provider/Names.h"
#include "provider/ZEBEthernetPortProvider.h"
#include "provider/ZEB_AutoStartEthernetPort.h"

// The CIM operations: each logs its name, takes the collection mutex and is answered by the collection.
// Within one operation the refreshes of many records share one answer of the kernel, and the status filters
// are those that the store has when it begins.

namespace ZEB {

using namespace CmpiCpp;

namespace {

constexpr NameLiteral kAutoStartClass = "ZEB_AutoStart";

/// Set by an object manager in this process that asks for several classes at one moment: when it began, in
/// nanoseconds of the monotonic clock.
constexpr char kSharedSinceEntry[] = "ZEBSharedSince";
/// Left for it: a number that stays as long as all classes answer the same, settings and counters aside.
constexpr char kStateEntry[] = "ZEBState";

/// Where the context of an enumeration has such an entry, it becomes what is known of the other ends of
/// cables.
constexpr char kLinkPartnersEntry[] = "ZEBLinkPartners";

std::optional<RefreshScope::Clock::time_point> sharedSince(const CmpiContext& context) {
  const auto entry = context.getNumber(kSharedSinceEntry);
  if (!entry) return std::nullopt;
  return RefreshScope::Clock::time_point(std::chrono::nanoseconds(*entry));
}

/// What an operation shares with others, which it is told by its context. To be made under the collection
/// mutex.
class SharedMoment {
 public:
  explicit SharedMoment(const CmpiContext& context) : _context(context), _refresh(sharedSince(context)) {}
  SharedMoment(const SharedMoment&) = delete;
  SharedMoment& operator=(const SharedMoment&) = delete;
  /// Both numbers only grow, so that their sum stays as long as both do.
  ~SharedMoment() {
    if (const auto facts = _refresh.sharedState()) _context.setNumber(kStateEntry, _served + *facts);
  }

 private:
  const CmpiContext& _context;
  const std::uint64_t _served = ServedState::number();
  const RefreshScope _refresh;
};

}  // namespace

void ZEBEthernetPortProvider::enumInstanceNames(CmpiObjectPathResult& result, const CmpiContext& context,
                                                const CmpiObjectPath& classPath) {
  _logger.info("enumInstanceNames()");
  const AutoMutex lock(_collectionMutex);
  const SharedMoment moment(context);
  _collection.enumInstanceNames(result, context, classPath);
}

void ZEBEthernetPortProvider::enumInstances(CmpiInstanceResult& result, const CmpiContext& context,
                                            const CmpiObjectPath& classPath, CmpiPropertyList properties) {
  _logger.info("enumInstances()");
  const AutoMutex lock(_collectionMutex);
  followFilters();
  const SharedMoment moment(context);
  if (classPath.className() == CmpiName(kAutoStartClass)) {
    returnAutostart(result);
  } else {
    _collection.enumInstances(result, context, classPath, properties);
  }
  if (context.getText(kLinkPartnersEntry))
    context.setText(getBroker().get(), kLinkPartnersEntry, _ethMRA->linkPartners());
}

// Made for the occasion, and never part of the collection.
void ZEBEthernetPortProvider::returnAutostart(CmpiInstanceResult& result) {
  ZEB_AutoStartEthernetPort autostart(_logger, std::string(kNameSpace.view()));
  result.returnInstance(autostart.makeInstance());
}

void ZEBEthernetPortProvider::getInstance(CmpiInstanceResult& result, const CmpiContext& context,
                                          const CmpiObjectPath& path, CmpiPropertyList properties) {
  _logger.info("getInstance()");
  const AutoMutex lock(_collectionMutex);
  const RefreshScope refresh(sharedSince(context));
  followFilters();
  if (!_collection.getInstance(result, context, path, properties)) throw CmpiStatus(CMPI_RC_ERR_NOT_FOUND);
}

void ZEBEthernetPortProvider::modifyInstance(const CmpiContext& /*context*/, const CmpiObjectPath& path,
                                             const CmpiInstance& instance, CmpiPropertyList properties) {
  _logger.info("modifyInstance()");
  const AutoMutex lock(_collectionMutex);
  followFilters();
  ZEB::modifyInstance({_logger, _collection, _dataStore.get()}, path, instance, properties);
}

void ZEBEthernetPortProvider::associators(CmpiInstanceResult& result, const CmpiContext& context,
                                          const CmpiObjectPath& path, const CmpiName& associationClass,
                                          const CmpiName& resultClass, const CmpiName& role,
                                          const CmpiName& resultRole, CmpiPropertyList properties) {
  _logger.info("associators()");
  const AutoMutex lock(_collectionMutex);
  const RefreshScope refresh(sharedSince(context));
  followFilters();
  _collection.associators(result, context, path, associationClass, resultClass, role, resultRole, properties);
}

void ZEBEthernetPortProvider::associatorNames(CmpiObjectPathResult& result, const CmpiContext& context,
                                              const CmpiObjectPath& path, const CmpiName& associationClass,
                                              const CmpiName& resultClass, const CmpiName& role,
                                              const CmpiName& resultRole) {
  _logger.info("associatorNames()");
  const AutoMutex lock(_collectionMutex);
  _collection.associatorNames(result, context, path, associationClass, resultClass, role, resultRole);
}

void ZEBEthernetPortProvider::references(CmpiInstanceResult& result, const CmpiContext& context,
                                         const CmpiObjectPath& path, const CmpiName& resultClass,
                                         const CmpiName& role, CmpiPropertyList properties) {
  _logger.info("references()");
  const AutoMutex lock(_collectionMutex);
  const RefreshScope refresh(sharedSince(context));
  followFilters();
  _collection.references(result, context, path, resultClass, role, properties);
}

void ZEBEthernetPortProvider::referenceNames(CmpiObjectPathResult& result, const CmpiContext& context,
                                             const CmpiObjectPath& path, const CmpiName& resultClass,
                                             const CmpiName& role) {
  _logger.info("referenceNames()");
  const AutoMutex lock(_collectionMutex);
  _collection.referenceNames(result, context, path, resultClass, role);
}

void ZEBEthernetPortProvider::invokeMethod(CmpiMethodResult& result, const CmpiContext& context,
                                           const CmpiObjectPath& /*path*/, const CmpiName& method,
                                           const CmpiArgs& /*in*/, CmpiArgs& /*out*/) {
  constexpr std::uint32_t kUnknownMethod = 1;
  std::uint32_t answer = kUnknownMethod;
  // A pass takes the collection mutex by itself, where it has to.
  if (method == CmpiName(kPerformWork)) answer = BackgroundWorker(monitored(), context).pass();
  result.returnData(answer);
}

}  // namespace ZEB
