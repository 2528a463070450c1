#pragma once

#include "classes/team/AdapterObject.h"

namespace ZEB {

/// The driver of an adapter.
class ZEB_EthernetPortControllerSoftwareIdentity : public AdapterObject {
 public:
  static constexpr CmpiCpp::NameLiteral kClassName = "ZEB_EthernetPortControllerSoftwareIdentity";

  ZEB_EthernetPortControllerSoftwareIdentity(const Logger& logger, const std::string& nameSpace,
                                             const std::uint32_t& number, const AdapterRecord& adapter);

  CmpiCpp::CmpiInstance makeInstance() override;
  CmpiCpp::CmpiInstance makeInstanceOf(CmpiCpp::CmpiPropertyList wanted) override;
};

}  // namespace ZEB
