#pragma once

#include <atomic>
#include <condition_variable>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "FakeObjects.h"
#include "GuardedTable.h"
#include "Habits.h"
#include "cmpicpp/CmpiBroker.h"

namespace ZEB::test {

/// An object manager for tests: function tables over plain values. What a thread makes belongs to its
/// innermost `Call`, attachment or memory mark, and is freed with it. Safe from several threads; the tables
/// may be changed, slots set to null too, before the provider runs.
class FakeBroker {
 public:
  explicit FakeBroker(const Habits& habits = habitsOfEnvironment());
  ~FakeBroker();
  FakeBroker(const FakeBroker&) = delete;
  FakeBroker& operator=(const FakeBroker&) = delete;

  const CMPIBroker* get() const { return &broker; }
  /// The handle that a factory call with that context makes.
  CmpiCpp::CmpiBroker handle(const CMPIContext* factoryContext = nullptr) const {
    return CmpiCpp::CmpiBroker(&broker, factoryContext);
  }

  const Habits& habits() const { return _habits; }

 private:
  const Habits _habits;
  GuardedTable<CMPIBrokerFT> _services;
  GuardedTable<CMPIBrokerEncFT> _factories;

 public:
  CMPIBroker broker{};
  CMPIBrokerFT& bft;
  CMPIBrokerEncFT& eft;
  CMPIBrokerMemFT mft{};

  /// One call of the object manager into a provider, on the thread that makes it.
  class Call {
   public:
    explicit Call(FakeBroker& broker);
    ~Call();
    Call(const Call&) = delete;
    Call& operator=(const Call&) = delete;

    FakeContext& context() { return *_context; }
    FakeResult& result() { return *_result; }
    FakeObjectPath* path(CmpiCpp::CmpiObjectPath value);
    FakeInstance* instance(CmpiCpp::CmpiInstance value);
    FakeArgs* args(CmpiCpp::CmpiArgs value = {});

    /// A client's change as this object manager passes it on. `names` is the client's property list.
    CMPIStatus modify(CMPIInstanceMI* mi, const CmpiCpp::CmpiObjectPath& path, CmpiCpp::CmpiInstance instance,
                      std::optional<std::vector<std::string>> names);
    /// The first subscription, and the end of the last.
    CMPIStatus enableIndications(CMPIIndicationMI* mi);
    CMPIStatus disableIndications(CMPIIndicationMI* mi);

   private:
    FakeBroker& _broker;
    FakeContext* _context;
    FakeResult* _result;
  };

  /// Values that instances of a class begin with where the object manager knows such.
  void declareDefaults(const CmpiCpp::CmpiName& className,
                       std::vector<CmpiCpp::CmpiInstance::Property> defaults);
  /// `className` descends from `superclass`: in that namespace, or in every one.
  void declareClass(const std::string& className, const std::string& superclass,
                    const std::string& nameSpace = "");
  /// Number of questions for ancestry.
  int ancestryQuestions() const { return _ancestryQuestions; }

  struct Delivery {
    const CMPIContext* context;
    std::string nameSpace;
    CmpiCpp::CmpiInstance indication;
    std::thread::id thread;
  };
  std::vector<Delivery> deliveries() const;
  /// Those since the last time, which are then forgotten.
  std::vector<Delivery> takeDeliveries();
  /// False when there are not that many after `patience`.
  bool waitForDeliveries(std::size_t count, std::chrono::milliseconds patience) const;
  /// Answer of every delivery from now on; one that is refused is not recorded.
  void answerDeliveries(CMPIrc rc, std::string message = "");

  /// As after a call that enabled or disabled them.
  void setIndicationsEnabled(bool enabled);

  /// Whom calls up for methods reach.
  void serve(CMPIMethodMI* methods) { _methods = methods; }

  struct Counts {
    int prepared = 0, attached = 0, detached = 0, marks = 0, releases = 0;
  };
  Counts counts() const;
  /// Objects of calls, attachments and marks that have not ended.
  std::size_t liveObjects() const;
  /// Objects that `clone` made and nobody released.
  int liveClones() const { return _liveClones; }
  /// What a provider must not do, such as making objects on a thread that is neither attached nor in a call.
  std::vector<std::string> violations() const;
  void violation(std::string text);

  /// What a new instance of that path begins with.
  std::vector<CmpiCpp::CmpiInstance::Property> prefilled(const CmpiCpp::CmpiObjectPath& path) const;

  template <class Object, class... Arguments>
  Object* make(Arguments&&... arguments) {
    auto made = std::make_unique<Object>(*this, std::forward<Arguments>(arguments)...);
    Object* object = made.get();
    keep(std::move(made));
    return object;
  }

 private:
  friend struct FakeServices;
  friend struct FakeObjectTables;
  using Arena = std::vector<std::unique_ptr<FakeObject>>;

  /// Of a call up that is being made; one that would is a violation.
  bool waitsForEver();
  void keep(std::unique_ptr<FakeObject> object);
  void pushArena();
  void popArena();
  std::vector<CmpiCpp::CmpiInstance::Property> defaultsOf(const CmpiCpp::CmpiName& className) const;

  mutable std::mutex _mutex;
  mutable std::condition_variable _delivered;
  std::map<std::thread::id, std::vector<Arena>> _arenas;
  Arena _strays;
  template <class Value>
  using ByName =
      std::map<CmpiCpp::CmpiName, Value, bool (*)(const CmpiCpp::CmpiName&, const CmpiCpp::CmpiName&)>;
  ByName<CmpiCpp::CmpiObjectPath> _superclasses;
  ByName<std::vector<CmpiCpp::CmpiInstance::Property>> _defaults;
  std::atomic<int> _ancestryQuestions{0};
  std::atomic<int> _liveClones{0};
  std::vector<Delivery> _deliveries;
  CMPIrc _deliveryAnswer = CMPI_RC_OK;
  std::string _deliveryMessage;
  bool _indicationsEnabled = false;
  CMPIMethodMI* _methods = nullptr;
  std::multiset<std::thread::id> _reachedByCallUp;
  std::map<const CMPIContext*, std::unique_ptr<FakeContext>> _prepared;
  Counts _counts;
  std::vector<std::string> _violations;
};

}  // namespace ZEB::test
