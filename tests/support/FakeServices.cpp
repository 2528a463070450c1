#include "FakeServices.h"

#include "FakeBroker.h"

namespace ZEB::test {
namespace {

FakeBroker& of(const CMPIBroker* broker) {
  return *static_cast<FakeBroker*>(const_cast<void*>(broker->hdl));
}

}  // namespace

void FakeServices::fill(CMPIBrokerFT& services, CMPIBrokerEncFT& factories, CMPIBrokerMemFT& memory) {
  services.prepareAttachThread = prepareAttachThread;
  services.attachThread = attachThread;
  services.detachThread = detachThread;
  services.deliverIndication = deliverIndication;
  services.invokeMethod = invokeMethod;
  factories.classPathIsA = classPathIsA;
  memory.mark = mark;
  memory.release = release;
}

CMPIContext* FakeServices::prepareAttachThread(const CMPIBroker* broker, const CMPIContext* context) {
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

CMPIStatus FakeServices::attachThread(const CMPIBroker* broker, const CMPIContext* context) {
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

CMPIStatus FakeServices::detachThread(const CMPIBroker* broker, const CMPIContext* context) {
  FakeBroker& self = of(broker);
  self.popArena();
  const std::lock_guard lock(self._mutex);
  ++self._counts.detached;
  // Each prepared context serves for one attach and is gone with the detach.
  if (self._prepared.erase(context) == 0) self._violations.push_back("detachThread of a thread not attached");
  return {CMPI_RC_OK, nullptr};
}

CMPIStatus FakeServices::deliverIndication(const CMPIBroker* broker, const CMPIContext* context,
                                           const char* nameSpace, const CMPIInstance* indication) {
  FakeBroker& self = of(broker);
  const CmpiCpp::CmpiInstance value = static_cast<const FakeInstance*>(indication)->asSent();
  if (self.waitsForEver()) return {CMPI_RC_ERR_FAILED, nullptr};
  CMPIrc answer;
  std::string message;
  {
    const std::lock_guard lock(self._mutex);
    answer = self._deliveryAnswer;
    message = self._deliveryMessage;
    if (self._habits.deliversWhileEnabledOnly && !self._indicationsEnabled) answer = CMPI_RC_ERR_FAILED;
    if (answer == CMPI_RC_OK) {
      self._deliveries.push_back({context, nameSpace, value, std::this_thread::get_id()});
      self._delivered.notify_all();
    }
  }
  return {answer, message.empty() ? nullptr : self.make<FakeString>(message)};
}

CMPIData FakeServices::invokeMethod(const CMPIBroker* broker, const CMPIContext* context,
                                    const CMPIObjectPath* path, const char* name, const CMPIArgs* in,
                                    CMPIArgs* out, CMPIStatus* status) {
  FakeBroker& self = of(broker);
  CMPIStatus answer{CMPI_RC_ERR_FAILED, nullptr};
  if (self._methods && !self.waitsForEver()) {
    const std::thread::id thread = std::this_thread::get_id();
    {
      const std::lock_guard lock(self._mutex);
      self._reachedByCallUp.insert(thread);
    }
    const CMPIResult* const result = self.make<FakeResult>();
    answer = self._methods->ft->invokeMethod(self._methods, context, result, path, name, in, out);
    const std::lock_guard lock(self._mutex);
    self._reachedByCallUp.extract(thread);
  }
  if (status) *status = answer;
  return {CMPI_null, CMPI_nullValue, {}};
}

CMPIBoolean FakeServices::classPathIsA(const CMPIBroker* broker, const CMPIObjectPath* path,
                                       const char* ancestor, CMPIStatus* status) {
  FakeBroker& self = of(broker);
  ++self._ancestryQuestions;
  if (status) *status = {CMPI_RC_OK, nullptr};
  const std::lock_guard lock(self._mutex);
  const CmpiCpp::CmpiObjectPath& value = static_cast<const FakeObjectPath*>(path)->value;
  CmpiCpp::CmpiName name = value.className();
  while (!(name == CmpiCpp::CmpiName(ancestor))) {
    const auto above = self._superclasses.find(name);
    if (above == self._superclasses.end()) return 0;
    const CmpiCpp::CmpiObjectPath& superclass = above->second;
    const bool isThere =
        superclass.nameSpace().empty() || CmpiCpp::CmpiName::equal(superclass.nameSpace(), value.nameSpace());
    if (!isThere) return 0;
    name = superclass.className();
  }
  return 1;
}

CMPIGcStat* FakeServices::mark(const CMPIBroker* broker, CMPIStatus* status) {
  FakeBroker& self = of(broker);
  if (status) *status = {CMPI_RC_OK, nullptr};
  self.pushArena();
  const std::lock_guard lock(self._mutex);
  ++self._counts.marks;
  return &self;
}

CMPIStatus FakeServices::release(const CMPIBroker* broker, const CMPIGcStat* /*mark*/) {
  FakeBroker& self = of(broker);
  self.popArena();
  const std::lock_guard lock(self._mutex);
  ++self._counts.releases;
  return {CMPI_RC_OK, nullptr};
}

}  // namespace ZEB::test
