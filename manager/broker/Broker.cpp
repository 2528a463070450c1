#include "broker/Broker.h"

namespace ZebManager {

Broker::Broker(const ClassRepository& repository, std::string nameSpace)
    : _repository(repository),
      _provider(repository, std::move(nameSpace)),
      _face{this, &kBrokerFT, &kBrokerEncFT, &kBrokerExtFT, &kBrokerMemFT} {}

}  // namespace ZebManager
