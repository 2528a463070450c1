#pragma once

#include <string_view>

#include "cmpicpp/CmpiBroker.h"
#include "cmpicpp/CmpiInstance.h"

namespace CmpiCpp {

/// Services of the object manager that a provider calls up for.
class CmpiMBService {
 public:
  /// Failures are thrown, so the caller's logger is not needed here.
  template <class Logger>
  CmpiMBService(const CmpiBroker& broker, const Logger& /*logger*/) : _broker(broker) {}

  /// Hands an indication to the object manager. Call it on a thread of the object manager or an attached one,
  /// with that thread's context. Throws `CmpiStatus` when it is refused.
  void deliverIndication(const CmpiContext& context, std::string_view nameSpace,
                         const CmpiInstance& indication);

 private:
  CmpiBroker _broker;
};

}  // namespace CmpiCpp
