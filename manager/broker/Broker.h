// The broker that the plug-in sees.
#pragma once

#include <string>

#include "broker/AttachedThreads.h"
#include "broker/IndicationQueue.h"
#include "broker/ProviderCalls.h"

namespace ZebManager {

inline constexpr char kNameSpace[] = "root/jxv";

/// One broker serves one provider. It has to outlive the provider's library.
class Broker {
 public:
  explicit Broker(const ClassRepository& repository, std::string nameSpace = kNameSpace);
  Broker(const Broker&) = delete;
  Broker& operator=(const Broker&) = delete;
  ~Broker() = default;

  /// What the provider gets.
  const CMPIBroker* face() const { return &_face; }
  /// The broker behind what the provider got.
  static Broker& of(const CMPIBroker* face) { return *static_cast<Broker*>(const_cast<void*>(face->hdl)); }

  const ClassRepository& repository() const { return _repository; }
  ProviderCalls& provider() { return _provider; }
  IndicationQueue& indications() { return _indications; }
  AttachedThreads& threads() { return _threads; }
  RefusalLog& refusals() { return _refusals; }

 private:
  const ClassRepository& _repository;
  ProviderCalls _provider;
  IndicationQueue _indications;
  AttachedThreads _threads;
  RefusalLog _refusals;
  CMPIBroker _face;
};

extern const CMPIBrokerFT kBrokerFT;
extern const CMPIBrokerEncFT kBrokerEncFT;
extern const CMPIBrokerExtFT kBrokerExtFT;
extern const CMPIBrokerMemFT kBrokerMemFT;

}  // namespace ZebManager
