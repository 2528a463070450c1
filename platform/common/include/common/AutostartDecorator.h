#pragma once

#include <memory>

#include "common/CmpiManagedInstance.h"
#include "common/ProviderDecorator.h"

namespace ZEB {

/// Runs the background work of the provider in it as its autostart instance describes: the worker method's
/// namespace, the interval and the stagger, both in seconds.
class AutostartDecorator : public ProviderDecorator {
 public:
  AutostartDecorator(const CmpiCpp::CmpiBroker& broker, const Logger& logger,
                     std::unique_ptr<CmpiManagedInstance> autostart, const ProviderCreator& creator);

 private:
  std::unique_ptr<CmpiManagedInstance> _autostart;
};

}  // namespace ZEB
