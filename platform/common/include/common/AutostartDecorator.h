#pragma once

#include <memory>
#include <optional>

#include "common/CmpiManagedInstance.h"
#include "common/ProviderDecorator.h"
#include "common/WorkerTimer.h"

namespace ZEB {

/// Runs the background work of the provider in it as its autostart instance describes: the worker method's
/// namespace, the interval and the stagger, both in seconds. Works in every object manager, because it calls
/// the method of the provider in it, and not the object manager's: on a thread of its own, attached with a
/// context that was prepared in the factory call, first after a random part of the stagger and then at the
/// interval, and early when `ZEBUtil::wakeWorker` is called. Does nothing where the configuration has it off,
/// where the object manager has no threads, and while a stop is requested.
class AutostartDecorator : public ProviderDecorator {
 public:
  AutostartDecorator(const CmpiCpp::CmpiBroker& broker, const Logger& logger,
                     std::unique_ptr<CmpiManagedInstance> autostart, const ProviderCreator& creator);
  ~AutostartDecorator() override;
  AutostartDecorator(const AutostartDecorator&) = delete;
  AutostartDecorator& operator=(const AutostartDecorator&) = delete;

 private:
  void startTimer(const CmpiCpp::CmpiBroker& broker);
  /// One call of the worker method. What it throws is logged: the next pass works again.
  void performWork(const CmpiCpp::CmpiContext& context);

  std::unique_ptr<CmpiManagedInstance> _autostart;
  std::optional<WorkerTimer> _timer;
};

}  // namespace ZEB
