#include "FakeBroker.h"

#include <cstddef>

#include "FakeEncapsulation.h"

namespace ZEB::test {
namespace {

FakeBroker& of(const CMPIBroker* broker) {
  return *static_cast<FakeBroker*>(const_cast<void*>(broker->hdl));
}

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

/// What the broker's tables point to.
struct FakeTables {
  static CMPIContext* prepareAttachThread(const CMPIBroker* broker, const CMPIContext* context) {
    FakeBroker& self = of(broker);
    if (!context) {
      self.violation("prepareAttachThread without a context");
      return nullptr;
    }
    auto made = std::make_unique<FakeContext>(self);
    CMPIContext* prepared = made.get();
    const std::lock_guard lock(self._mutex);
    ++self._counts.prepared;
    self._prepared.emplace(prepared, std::move(made));
    return prepared;
  }

  static CMPIStatus attachThread(const CMPIBroker* broker, const CMPIContext* context) {
    FakeBroker& self = of(broker);
    {
      const std::lock_guard lock(self._mutex);
      if (!self._prepared.contains(context)) {
        self._violations.push_back("attachThread with a context that was not prepared");
        return {CMPI_RC_ERR_FAILED, nullptr};
      }
      ++self._counts.attached;
    }
    self.pushArena();
    return {CMPI_RC_OK, nullptr};
  }

  static CMPIStatus detachThread(const CMPIBroker* broker, const CMPIContext* context) {
    FakeBroker& self = of(broker);
    self.popArena();
    const std::lock_guard lock(self._mutex);
    ++self._counts.detached;
    // Each prepared context serves for one attach and is gone with the detach.
    if (self._prepared.erase(context) == 0)
      self._violations.push_back("detachThread of a thread not attached");
    return {CMPI_RC_OK, nullptr};
  }

  static CMPIStatus deliverIndication(const CMPIBroker* broker, const CMPIContext* context,
                                      const char* nameSpace, const CMPIInstance* indication) {
    FakeBroker& self = of(broker);
    const CmpiCpp::CmpiInstance value = static_cast<const FakeInstance*>(indication)->asSent();
    CMPIrc answer;
    std::string message;
    {
      const std::lock_guard lock(self._mutex);
      answer = self._deliveryAnswer;
      message = self._deliveryMessage;
      if (answer == CMPI_RC_OK) {
        self._deliveries.push_back({context, nameSpace, value, std::this_thread::get_id()});
        self._delivered.notify_all();
      }
    }
    return {answer, message.empty() ? nullptr : self.make<FakeString>(message)};
  }

  static CMPIBoolean classPathIsA(const CMPIBroker* broker, const CMPIObjectPath* path, const char* ancestor,
                                  CMPIStatus* status) {
    FakeBroker& self = of(broker);
    ++self._ancestryQuestions;
    if (status) *status = {CMPI_RC_OK, nullptr};
    const std::lock_guard lock(self._mutex);
    CmpiCpp::CmpiName name = static_cast<const FakeObjectPath*>(path)->value.className();
    while (!(name == CmpiCpp::CmpiName(ancestor))) {
      const auto above = self._superclasses.find(name);
      if (above == self._superclasses.end()) return 0;
      name = above->second;
    }
    return 1;
  }

  static CMPIGcStat* mark(const CMPIBroker* broker, CMPIStatus* status) {
    FakeBroker& self = of(broker);
    if (status) *status = {CMPI_RC_OK, nullptr};
    self.pushArena();
    const std::lock_guard lock(self._mutex);
    ++self._counts.marks;
    return &self;
  }

  static CMPIStatus release(const CMPIBroker* broker, const CMPIGcStat* /*mark*/) {
    FakeBroker& self = of(broker);
    self.popArena();
    const std::lock_guard lock(self._mutex);
    ++self._counts.releases;
    return {CMPI_RC_OK, nullptr};
  }
};

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
  bft.prepareAttachThread = FakeTables::prepareAttachThread;
  bft.attachThread = FakeTables::attachThread;
  bft.detachThread = FakeTables::detachThread;
  bft.deliverIndication = FakeTables::deliverIndication;
  eft.ftVersion = habits.tableVersion;
  fillFactories(eft);
  eft.classPathIsA = FakeTables::classPathIsA;
  mft.ftVersion = habits.tableVersion;
  mft.mark = FakeTables::mark;
  mft.release = FakeTables::release;
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

void FakeBroker::declareClass(const std::string& className, const std::string& superclass) {
  const std::lock_guard lock(_mutex);
  _superclasses[className] = superclass;
}

std::vector<FakeBroker::Delivery> FakeBroker::deliveries() const {
  const std::lock_guard lock(_mutex);
  return _deliveries;
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
