#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <mutex>
#include <string>

#include "common/ProviderDecorator.h"

namespace ZEB {

/// Counts and times every operation of the provider in it; logs the sums when it is destroyed.
class PerfmonDecorator : public ProviderDecorator {
 public:
  using ProviderDecorator::ProviderDecorator;
  ~PerfmonDecorator() override;
  PerfmonDecorator(const PerfmonDecorator&) = delete;
  PerfmonDecorator& operator=(const PerfmonDecorator&) = delete;

  struct Sum {
    std::uint64_t calls = 0;
    std::uint64_t failures = 0;
    std::chrono::nanoseconds total{0};
    std::chrono::nanoseconds longest{0};
  };

  /// By operation. May be called on any thread.
  std::map<std::string, Sum> sums() const;

 protected:
  void around(const char* operation, const CmpiCpp::CmpiObjectPath& subject,
              const std::function<void()>& call) override;

 private:
  mutable std::mutex _mutex;
  std::map<std::string, Sum> _sums;
};

}  // namespace ZEB
