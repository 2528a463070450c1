#pragma once

#include <memory>
#include <string>

#include "cmpicpp/CmpiContext.h"
#include "common/Logger.h"
#include "ethernet/EthernetAdapterDataObject.h"

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
  /// Returns whether adapters or ports differ from what the last walk delivered, or, while no event is
  /// latched, addresses, gateways or VLANs. True also when the last walk did not reach its end.
  bool forceReload();

  /// Asks only if something was announced since the last answer was begun. Non-zero when asking failed.
  int updateAll();

  /// Whether anything was announced since the last answer was begun. Asks nothing.
  bool announced();

  /// Whether a port's status or link changed since this was last asked.
  bool ethEventDetected();

  /// Makes the next `forceReload` answer true: what the last walk delivered was not put to use.
  void buildFailed();

  /// Why the source could last not be read, in one line; empty when it could.
  std::string failureText() const;

  /// Whether the last `forceReload` would have been true, but for an event that was latched: once the event
  /// has been dealt with, the next one is. For the thread that reloads.
  bool reloadHeldBack() const { return _reloadHeldBack; }

 private:
  std::shared_ptr<ethernet::Inventory> _inventory;
  std::unique_ptr<ethernet::Walk> _walk;
  bool _reloadHeldBack = false;
};

/// The data source that the configuration asks for: this host or a recorded snapshot.
std::unique_ptr<EthernetMRA> ethernetMRAFactory(const Logger& logger, const CmpiCpp::CmpiContext& context);

}  // namespace ZEB
