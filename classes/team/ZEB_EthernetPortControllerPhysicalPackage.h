#pragma once

#include "classes/team/AdapterObject.h"

namespace ZEB {

/// The card or the on-board chip that an adapter is made as.
class ZEB_EthernetPortControllerPhysicalPackage : public AdapterObject {
 public:
  static constexpr CmpiCpp::NameLiteral kClassName = "ZEB_EthernetPortControllerPhysicalPackage";

  ZEB_EthernetPortControllerPhysicalPackage(const Logger& logger, const std::string& nameSpace,
                                            const std::uint32_t& number, const AdapterRecord& adapter);

  CmpiCpp::CmpiInstance makeInstance() override;
  CmpiCpp::CmpiInstance makeInstanceOf(CmpiCpp::CmpiPropertyList wanted) override;
};

}  // namespace ZEB
