#include "isolation/ProviderSupervisor.h"

#include "isolation/SupervisorLoop.h"

namespace ZebManager {

ProviderSupervisor::ProviderSupervisor(SupervisorOptions options, Sink sink)
    : _loop(std::make_unique<Loop>(std::move(options), std::move(sink))) {}

ProviderSupervisor::~ProviderSupervisor() = default;

ProviderSupervisor::Answer ProviderSupervisor::perform(std::string_view message, bool repeatable) {
  const auto call = std::make_shared<Call>(message, repeatable);
  _loop->add(call);
  return call->wait();
}

void ProviderSupervisor::stop() {
  _loop->stop();
}

void ProviderSupervisor::setFilters(const std::vector<IndicationFilter>& filters) {
  _loop->setFilters(filters);
}

}  // namespace ZebManager
