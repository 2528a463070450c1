// Sends indications to listeners.
#pragma once

#include <chrono>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "indications/BootClock.h"
#include "indications/PostSettings.h"
#include "indications/Subscription.h"

namespace ZebManager {

struct DeliverySettings : PostSettings {
  std::string directory;                  ///< of the queue's file; made when it is missing
  std::size_t mostWaiting = 10'000;       ///< for one listener
  std::size_t mostBytes = 64U << 20;      ///< for all listeners
  std::size_t mostHeldBytes = 16U << 20;  ///< of these, in memory while the file takes nothing
  std::chrono::seconds longestWait = std::chrono::hours(24);  ///< then an indication is dropped
  unsigned mostRefusals = 10;  ///< times that a listener may answer an indication with a CIM error
  BootClock::time_point (*clock)() = &BootClock::now;  ///< for ages of indications and ends of subscriptions
};

/// Indications wait in a file, in the order in which they came, until their listener has acknowledged them;
/// those of one listener are sent one at a time, each again until it is acknowledged, first after a short
/// pause and then after longer ones. Listeners do not wait for each other. Each export carries a
/// SequenceContext, the same for all that goes to one listener, and a SequenceNumber that grows by one: what
/// comes twice because the first acknowledgement was lost carries the same number again.
///
/// Dropped, with a line in the log, are: the oldest when too many wait, what has waited too long, and what a
/// listener has refused too often. What waited for a subscription that is gone goes silently.
///
/// Sending is a thread of this object's own. All members are safe from any thread.
class Delivery {
 public:
  /// Opens the queue; a damaged file is put aside, and one that cannot be written read. Nothing is sent
  /// before `setSubscriptions`. Throws ManagerError.
  Delivery(const DeliverySettings& settings, LogLine log);
  Delivery(const Delivery&) = delete;
  Delivery& operator=(const Delivery&) = delete;
  /// Ends at once; what waits stays in the file.
  ~Delivery();

  /// The subscriptions that are enabled, all of them.
  void setSubscriptions(std::vector<Subscription> subscriptions);

  /// Queues an indication for every subscription to one of the filters. It is in the file when this returns,
  /// or in memory when the file cannot be written.
  void deliver(const std::vector<std::string>& filterNames, std::string_view instanceElement);

  /// How many indications wait, for all listeners together.
  std::size_t waiting() const;

 private:
  class Exporter;
  std::unique_ptr<Exporter> _exporter;
};

}  // namespace ZebManager
