#pragma once

#include "common/ProviderDecorator.h"

namespace ZEB {

/// Logs what comes in and how it ended: a line each at info level, a failed operation at warn level.
class LoggedProvider : public ProviderDecorator {
 public:
  using ProviderDecorator::ProviderDecorator;

 protected:
  void around(const char* operation, const CmpiCpp::CmpiObjectPath& subject,
              const std::function<void()>& call) override;
};

}  // namespace ZEB
