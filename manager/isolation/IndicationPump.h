// Indications on their way from the plug-in to the server.
#pragma once

#include <sys/types.h>

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

#include "isolation/FilterSet.h"
#include "isolation/Frame.h"
#include "isolation/Handover.h"
#include "isolation/ProviderProcess.h"

namespace ZebManager {

/// Sends what satisfies a filter, with a bounded number on the way; the broker's queue holds the rest. What
/// the plug-in has reported goes along, so that the other end has both or none.
class IndicationPump {
 public:
  /// `handover` has to outlive the broker's queue.
  IndicationPump(HostedProvider& provider, FrameSender& sender, HandoverFile& handover);
  IndicationPump(const IndicationPump&) = delete;
  IndicationPump& operator=(const IndicationPump&) = delete;
  /// Sends what waits.
  ~IndicationPump();

  void setFilters(const std::vector<IndicationFilter>& filters);
  /// The server has passed one on.
  void taken();
  /// Takes nothing more from the plug-in; what it took is sent whatever is on the way.
  void retire();
  pid_t thread() const { return _threadId; }

 private:
  void run();
  void send(const DeliveredIndication& delivered);
  std::vector<std::string> matching(const DeliveredIndication& delivered);
  void sendReported();
  std::shared_ptr<const FilterSet> filters();

  HostedProvider& _provider;
  FrameSender& _sender;
  HandoverFile& _handover;
  std::mutex _mutex;
  std::condition_variable _changed;
  std::shared_ptr<const FilterSet> _filters;
  unsigned _onTheWay = 0;
  bool _open = false;
  bool _retired = false;
  bool _closed = false;
  std::atomic<pid_t> _threadId = 0;
  std::thread _thread;
};

}  // namespace ZebManager
