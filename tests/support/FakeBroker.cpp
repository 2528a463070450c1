#include "FakeBroker.h"

#include <cstddef>
#include <utility>

#include "FakeEncapsulation.h"
#include "FakeServices.h"

namespace ZEB::test {
namespace {

bool nameBefore(const CmpiCpp::CmpiName& a, const CmpiCpp::CmpiName& b) {
  const auto lower = [](const CmpiCpp::CmpiName& name) {
    std::string text = name.str();
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
  };
  return lower(a) < lower(b);
}

}  // namespace

FakeBroker::FakeBroker(const Habits& habits)
    : _habits(habits),
      _services(habits.tablesEndEarly ? offsetof(CMPIBrokerFT, enumerateInstancesFiltered)
                                      : sizeof(CMPIBrokerFT)),
      _factories(habits.tablesEndEarly ? offsetof(CMPIBrokerEncFT, newPropertyList)
                                       : sizeof(CMPIBrokerEncFT)),
      bft(_services.get()),
      eft(_factories.get()),
      _superclasses(nameBefore),
      _defaults(nameBefore) {
  broker = {this, &bft, &eft, nullptr, habits.hasMemoryTable ? &mft : nullptr};
  bft.brokerCapabilities = CMPI_MB_Indications;
  bft.brokerVersion = habits.brokerVersion;
  bft.brokerName = "fake";
  FakeServices::fill(bft, eft, mft);
  eft.ftVersion = habits.tableVersion;
  fillFactories(eft);
  mft.ftVersion = habits.tableVersion;
}

FakeBroker::~FakeBroker() = default;

void FakeBroker::keep(std::unique_ptr<FakeObject> object) {
  const std::lock_guard lock(_mutex);
  const auto arenas = _arenas.find(std::this_thread::get_id());
  if (arenas != _arenas.end() && !arenas->second.empty()) {
    arenas->second.back().push_back(std::move(object));
  } else {
    _violations.emplace_back("an object made on a thread that is neither attached nor in a call");
    _strays.push_back(std::move(object));
  }
}

void FakeBroker::pushArena() {
  const std::lock_guard lock(_mutex);
  _arenas[std::this_thread::get_id()].emplace_back();
}

void FakeBroker::popArena() {
  Arena freed;
  const std::lock_guard lock(_mutex);
  const auto arenas = _arenas.find(std::this_thread::get_id());
  if (arenas == _arenas.end()) {
    _violations.emplace_back("a release, detach or return without its beginning");
    return;
  }
  freed = std::move(arenas->second.back());
  arenas->second.pop_back();
  if (arenas->second.empty()) _arenas.erase(arenas);
}

bool FakeBroker::waitsForEver() {
  const std::lock_guard lock(_mutex);
  if (!_habits.callsUpOneLevel || !_reachedByCallUp.contains(std::this_thread::get_id())) return false;
  _violations.emplace_back("a call up in a call that a call up reached waits for ever");
  return true;
}

void FakeBroker::setIndicationsEnabled(bool enabled) {
  const std::lock_guard lock(_mutex);
  _indicationsEnabled = enabled;
}

void FakeBroker::violation(std::string text) {
  const std::lock_guard lock(_mutex);
  _violations.push_back(std::move(text));
}

FakeBroker::Call::Call(FakeBroker& theBroker) : _broker(theBroker) {
  _broker.pushArena();
  _context = _broker.make<FakeContext>();
  if (_broker._habits.hasNullTexts) _context->nullTexts = {CMPIPrincipal, "CMPIRole"};
  _result = _broker.make<FakeResult>();
}

FakeBroker::Call::~Call() {
  _broker.popArena();
}

FakeObjectPath* FakeBroker::Call::path(CmpiCpp::CmpiObjectPath value) {
  return _broker.make<FakeObjectPath>(std::move(value));
}
FakeInstance* FakeBroker::Call::instance(CmpiCpp::CmpiInstance value) {
  return _broker.make<FakeInstance>(std::move(value));
}
FakeArgs* FakeBroker::Call::args(CmpiCpp::CmpiArgs value) {
  return _broker.make<FakeArgs>(std::move(value));
}

CMPIStatus FakeBroker::Call::modify(CMPIInstanceMI* mi, const CmpiCpp::CmpiObjectPath& path,
                                    CmpiCpp::CmpiInstance instance,
                                    std::optional<std::vector<std::string>> names) {
  const Habits& habits = _broker._habits;
  if (!names && habits.completesChanges) {
    for (const auto& each : _broker.defaultsOf(path.className())) {
      if (!instance.findProperty(each.name.view())) instance.addProperty(each.name, each.value);
    }
  }
  if (!names && habits.listsChanges) {
    names.emplace();
    for (const auto& each : instance.properties()) names->push_back(each.name.str());
  }
  std::vector<const char*> list;
  if (names) {
    for (const std::string& name : *names) list.push_back(name.c_str());
    list.push_back(nullptr);
  }
  return mi->ft->modifyInstance(mi, &context(), &result(), this->path(path),
                                this->instance(std::move(instance)), names ? list.data() : nullptr);
}

// Delivery works within the call that enables it, and ends when the one that disables it has returned.
CMPIStatus FakeBroker::Call::enableIndications(CMPIIndicationMI* mi) {
  _broker.setIndicationsEnabled(true);
  return mi->ft->enableIndications(mi, &context());
}
CMPIStatus FakeBroker::Call::disableIndications(CMPIIndicationMI* mi) {
  const CMPIStatus status = mi->ft->disableIndications(mi, &context());
  _broker.setIndicationsEnabled(false);
  return status;
}

void FakeBroker::declareDefaults(const CmpiCpp::CmpiName& className,
                                 std::vector<CmpiCpp::CmpiInstance::Property> defaults) {
  const std::lock_guard lock(_mutex);
  _defaults[className] = std::move(defaults);
}

std::vector<CmpiCpp::CmpiInstance::Property> FakeBroker::defaultsOf(
    const CmpiCpp::CmpiName& className) const {
  const std::lock_guard lock(_mutex);
  const auto found = _defaults.find(className);
  return found == _defaults.end() ? std::vector<CmpiCpp::CmpiInstance::Property>() : found->second;
}

std::vector<CmpiCpp::CmpiInstance::Property> FakeBroker::prefilled(
    const CmpiCpp::CmpiObjectPath& path) const {
  std::vector<CmpiCpp::CmpiInstance::Property> all;
  if (!_habits.prefillsInstances) return all;
  for (const auto& key : path.keys()) all.push_back({key.name, key.value});
  for (auto& each : defaultsOf(path.className())) all.push_back(std::move(each));
  return all;
}

void FakeBroker::declareClass(const std::string& className, const std::string& superclass,
                              const std::string& nameSpace) {
  const std::lock_guard lock(_mutex);
  _superclasses[className] = {nameSpace, superclass};
}

std::vector<FakeBroker::Delivery> FakeBroker::deliveries() const {
  const std::lock_guard lock(_mutex);
  return _deliveries;
}

std::vector<FakeBroker::Delivery> FakeBroker::takeDeliveries() {
  const std::lock_guard lock(_mutex);
  return std::exchange(_deliveries, {});
}

bool FakeBroker::waitForDeliveries(std::size_t count, std::chrono::milliseconds patience) const {
  std::unique_lock lock(_mutex);
  return _delivered.wait_for(lock, patience, [&] { return _deliveries.size() >= count; });
}

void FakeBroker::answerDeliveries(CMPIrc rc, std::string message) {
  const std::lock_guard lock(_mutex);
  _deliveryAnswer = rc;
  _deliveryMessage = std::move(message);
}

FakeBroker::Counts FakeBroker::counts() const {
  const std::lock_guard lock(_mutex);
  return _counts;
}

std::size_t FakeBroker::liveObjects() const {
  const std::lock_guard lock(_mutex);
  std::size_t count = 0;
  for (const auto& [thread, arenas] : _arenas) {
    for (const Arena& arena : arenas) count += arena.size();
  }
  return count;
}

std::vector<std::string> FakeBroker::violations() const {
  const std::lock_guard lock(_mutex);
  return _violations;
}

}  // namespace ZEB::test
