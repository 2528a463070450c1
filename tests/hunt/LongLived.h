#pragma once

#include <string>
#include <vector>

#include "AlertModel.h"
#include "Served.h"
#include "cmpicpp/CmpiInstance.h"

namespace ZEB::test {

/// The plug-in that lives through it all: the one that is linked in, with indications enabled and every
/// setting that lets an alert through.
class LongLived {
 public:
  explicit LongLived(FakeBroker& broker);
  ~LongLived();
  LongLived(const LongLived&) = delete;
  LongLived& operator=(const LongLived&) = delete;

  Served serves() { return servedBy(_broker, _instances); }
  ServedMoment servesInState() { return stateServedBy(_broker, _instances); }
  /// A client asks for one class, which is chosen.
  void request(std::uint32_t which);
  void pass();
  /// What was sent since this was last asked, in the order of the texts.
  std::vector<Alert> sent();

 private:
  std::vector<CmpiCpp::CmpiInstance> enumerate(const std::string& className);
  void openEveryGate();
  Alert alertOf(const CmpiCpp::CmpiInstance& indication);

  FakeBroker& _broker;
  CMPIInstanceMI* _instances;
  CMPIMethodMI* _methods;
  CMPIIndicationMI* _indications;
  std::size_t _told = 0;
};

/// What of two lists in order is in one of them only; a line each.
std::string differences(const std::vector<Alert>& expected, const std::vector<Alert>& sent);

}  // namespace ZEB::test
