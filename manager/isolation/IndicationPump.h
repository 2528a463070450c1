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
#include "isolation/ProviderProcess.h"

namespace ZebManager {

/// Sends what satisfies a filter, with a bounded number on the way; the broker's queue holds the rest.
class IndicationPump {
 public:
  IndicationPump(HostedProvider& provider, FrameSender& sender);
  IndicationPump(const IndicationPump&) = delete;
  IndicationPump& operator=(const IndicationPump&) = delete;
  /// Sends what waits.
  ~IndicationPump();

  void setFilters(const std::vector<IndicationFilter>& filters);
  /// The server has passed one on.
  void taken();
  pid_t thread() const { return _threadId; }

 private:
  void run();
  void send(const DeliveredIndication& delivered);
  std::shared_ptr<const FilterSet> filters();

  HostedProvider& _provider;
  FrameSender& _sender;
  std::mutex _mutex;
  std::condition_variable _changed;
  std::shared_ptr<const FilterSet> _filters;
  unsigned _onTheWay = 0;
  bool _closed = false;
  std::atomic<pid_t> _threadId = 0;
  std::thread _thread;
};

}  // namespace ZebManager
