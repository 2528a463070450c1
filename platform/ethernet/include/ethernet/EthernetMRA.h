#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>

#include "cmpicpp/CmpiContext.h"
#include "common/Logger.h"
#include "ethernet/EthernetAdapterDataObject.h"
#include "ethernet/LayerChange.h"

namespace ZEB {

namespace ethernet {
class Inventory;
class Walk;
}  // namespace ethernet

/// The source of adapter records. Both data sources of a process share one inventory, and with it each answer
/// of the kernel. Safe to use from several threads; a walk (`getFirstData`, `getNextData`) belongs to one.
class EthernetMRA {
 public:
  /// What the walk's operations return.
  static constexpr int kDelivered = 0;
  static constexpr int kFailed = 1;
  static constexpr int kNoMoreData = 2;

  explicit EthernetMRA(std::shared_ptr<ethernet::Inventory> inventory);
  ~EthernetMRA();
  EthernetMRA(const EthernetMRA&) = delete;
  EthernetMRA& operator=(const EthernetMRA&) = delete;

  /// Begins a walk over the adapters, in bus order. With `fresh` set, over an answer asked for now.
  int getFirstData(bool fresh, EthernetAdapterDataObject& adapter);
  int getNextData(bool fresh, EthernetAdapterDataObject& adapter);

  /// Asks anew; inside a `RefreshScope` the other data source and the refreshes that follow share the answer.
  /// Returns whether anything that a build gives an instance for, or gives to one for good, differs from what
  /// the last walk delivered: adapters, ports, addresses in use, gateways, VLANs. True also when the last
  /// walk did not reach its end; false when asking failed.
  bool forceReload();

  /// Whether the last `forceReload` could not ask.
  bool reloadFailed() const { return _reloadFailed; }

  /// Asks only if something was announced since the last answer was begun. Non-zero when asking failed.
  int updateAll();

  /// Whether anything was announced since the last answer was begun. Asks nothing.
  bool announced();

  /// Whether addresses or routes of anything that the newest answer says may have changed with that. True
  /// while there is no answer.
  bool concernedBy(const LayerChange& change) const;

  /// Whether a port's status or link differs between what the open `RefreshScope` works with (without one,
  /// the newest answer) and what was there when events were last processed, or when the first build began.
  /// Whoever else reads meanwhile changes nothing in that. False when nothing could be read.
  bool ethEventDetected();

  /// What `ethEventDetected` has looked at has been told to whom it concerns.
  void eventsProcessed();

  /// When the next interface that was switched on has had the time that a link may take; none when there is
  /// no such interface. Until it has its link or that time is up, it counts as switched off.
  std::optional<std::chrono::steady_clock::time_point> nextSettled();

  /// What is known of the other ends of cables, as JSON; of the open scope's answer, as for a walk. Empty
  /// when asking failed.
  std::string linkPartners();

  /// Makes the next `forceReload` answer true: what the last walk delivered was not put to use.
  void buildFailed();

  /// Why the source could last not be read, in one line; empty when it could.
  std::string failureText() const;

 private:
  std::shared_ptr<ethernet::Inventory> _inventory;
  std::unique_ptr<ethernet::Walk> _walk;
  bool _reloadFailed = false;
};

/// The data source that the configuration asks for: this host or a recorded snapshot.
std::unique_ptr<EthernetMRA> ethernetMRAFactory(const Logger& logger, const CmpiCpp::CmpiContext& context);

}  // namespace ZEB
