#pragma once

#include "classes/team/AdapterObject.h"

namespace ZEB {

/// The firmware of an adapter.
class ZEB_EthernetPortControllerFirmwareIdentity : public AdapterObject {
 public:
  static constexpr CmpiCpp::NameLiteral kClassName = "ZEB_EthernetPortControllerFirmwareIdentity";

  ZEB_EthernetPortControllerFirmwareIdentity(const Logger& logger, const std::string& nameSpace,
                                             const std::uint32_t& number, const AdapterRecord& adapter);

  CmpiCpp::CmpiInstance makeInstance() override;
  CmpiCpp::CmpiInstance makeInstanceOf(CmpiCpp::CmpiPropertyList wanted) override;
};

}  // namespace ZEB
