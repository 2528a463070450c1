#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "ethernet/LayerChange.h"
#include "ethernet/RefreshPart.h"
#include "model/Model.h"
#include "model/Settling.h"
#include "snapshot/HostSource.h"

namespace ZEB::ethernet {

/// Counters of all interfaces, and the answer that was still good when they were read.
struct CounterAnswer {
  CounterSnapshot counters;
  std::shared_ptr<const Model> model;
};

class ScopeAnswers;

/// What the data sources and the records share: one `HostSource`, its newest answer as a model, what the
/// builds were given, and what was last looked through for events. Safe to use from several threads: asking
/// is serialised, and nobody who only reads waits for it.
class Inventory {
 public:
  using Clock = std::chrono::steady_clock;

  /// The two who walk and reload: adapters with their ports, and teams.
  enum class Kind : std::uint8_t { Ports, Teams };

  /// Interfaces that are switched on settle for `settleTime`; with 0 they do not.
  Inventory(std::unique_ptr<HostSource> source, bool includeVirtual,
            std::chrono::milliseconds settleTime = {}, std::function<Clock::time_point()> now = Clock::now);

  /// From now on the newest answer counts as one begun now, as long as nothing was announced since: for a
  /// process that starts for one question. To be called before anything is asked.
  void answerOneQuestion() { _oneQuestion = true; }

  /// For a walk: the open scope's answer, else the newest if nothing was announced since, else a new one.
  /// Null when asking failed, as everywhere here.
  std::shared_ptr<const Model> current();

  /// An answer begun now.
  std::shared_ptr<const Model> fresh();

  /// An answer begun now, unless the other kind's reload has just asked for one that this kind has not seen:
  /// within the open scope, or as long as nothing was announced since.
  std::shared_ptr<const Model> reload(Kind kind);

  /// Asks if something was announced since the newest answer was begun. False when asking failed. An open
  /// scope that has its answer keeps to it, and what is announced meanwhile stays announced.
  bool update();

  /// Whether anything was announced since the newest answer was begun, or since the last `update` or `reload`
  /// and clients have had it already.
  bool announced();

  /// Whether the newest answer may be another since that change; true when there is none.
  bool concernedBy(const LayerChange& change) const;

  /// Newer facts of one interface: of the open scope's answer, else of an answer for it alone. No value when
  /// asking failed; null when the interface is gone. For who reads no more than a part, once a dump is the
  /// cheaper way, one of the part alone.
  template <class Facts>
  std::optional<std::shared_ptr<const Facts>> newerFacts(const Facts& before,
                                                         RefreshPart part = RefreshPart::Everything);

  /// A number that stands for what the open scope works with: as long as it stays, nothing but counters is
  /// another. Only for a scope that shares its answers; none where there is no answer.
  std::optional<std::uint64_t> sharedState();

  /// Whether a transition of that kind lies between what was looked through last and the open scope's answer;
  /// without a scope, the newest. Says the same until `lookedThrough`, whoever else asks for what meanwhile.
  bool eventDetected(Kind kind) const;
  /// That answer has been looked through. What the first build was given counts as that.
  void lookedThrough(Kind kind);

  /// When the time of the next interface that settles is up; none while nothing does.
  std::optional<Clock::time_point> nextSettled();

  /// What the last complete walk delivered; null before the first.
  std::shared_ptr<const Model> delivered(Kind kind) const;
  /// Whether walks since then were begun and not ended, or came to nothing.
  bool deliveryPending(Kind kind) const;
  void beginDelivery(Kind kind);
  void endDelivery(Kind kind, std::shared_ptr<const Model> model);

  /// Why asking failed last; empty when it did not.
  std::string failureText() const;

 private:
  struct Delivery {
    std::shared_ptr<const Model> model;
    bool pending = true;
  };
  /// An answer that the other kind's reload asked for.
  struct Offer {
    std::shared_ptr<const Model> model;
    Clock::time_point begun;
  };

  std::shared_ptr<const Model> workedWith() const;
  std::shared_ptr<const Model> askLocked();
  bool mayTake(const Offer& offer);
  template <class Facts>
  std::optional<std::shared_ptr<const Facts>> partOfMany(ScopeAnswers& answers, std::uint32_t index,
                                                         RefreshPart part);
  /// These two give null where the part is not to be had by itself. The model knows no addresses.
  std::shared_ptr<const Model> askLinks();
  std::shared_ptr<const CounterAnswer> askCounters();
  Outcome<HostSnapshot> askOne(std::uint32_t index);
  void noteFailure(const std::string& text);

  /// Null where it is not as good as one begun now.
  std::shared_ptr<const Model> newestOfOneQuestion();
  /// What an operation works with that may share its answers with others since a time: the newest, or a new
  /// one where that was begun before and something but counters may have changed.
  void takeShared(ScopeAnswers& answers, Clock::time_point since);
  std::uint64_t stateOf(const std::shared_ptr<const Model>& model);
  template <class Facts>
  std::optional<std::shared_ptr<const Facts>> sharedFacts(ScopeAnswers& answers, Clock::time_point since,
                                                          std::uint32_t index, RefreshPart part);

  const bool _includeVirtual;
  bool _oneQuestion = false;

  std::mutex _asking;  ///< held while the source is used; guards what follows, to _offers
  std::unique_ptr<HostSource> _source;
  Settling _settling;
  Clock::time_point _begun;
  bool _unfollowed = false;  ///< whether an answer had news that the two who reload have not looked at
  std::array<Offer, 2> _offers;

  mutable std::mutex _mutex;  ///< guards what follows; never held while asking
  std::shared_ptr<const Model> _newest;
  std::array<std::shared_ptr<const Model>, 2> _lookedThrough;  ///< null before the first build
  std::array<Delivery, 2> _deliveries;
  std::string _failure;

  std::mutex _comparing;  ///< guards what follows
  std::shared_ptr<const Model> _stated;
  std::uint64_t _state = 0;  ///< of that model
};

/// The inventory that the process's data sources share, made as the configuration asks for when there is
/// none.
std::shared_ptr<Inventory> processInventory();

/// The same, if anyone holds it.
std::shared_ptr<Inventory> existingProcessInventory();

}  // namespace ZEB::ethernet
