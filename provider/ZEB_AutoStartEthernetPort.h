#pragma once

#include "classes/port/ManagedObject.h"

namespace ZEB {

/// How the provider's background work is to be started and polled. Held by the autostart decorator, and made
/// anew for every enumeration of "ZEB_AutoStart"; never part of a collection.
class ZEB_AutoStartEthernetPort : public ManagedObject {
 public:
  static constexpr CmpiCpp::NameLiteral kClassName = "ZEB_AutoStartEthernetPort";

  ZEB_AutoStartEthernetPort(const Logger& logger, const std::string& nameSpace);

  CmpiCpp::CmpiInstance makeInstance() override;
};

}  // namespace ZEB
