#pragma once

#include "classes/team/AdapterObject.h"

namespace ZEB {

/// The controller of an adapter as a device.
class ZEB_EthernetPortController : public AdapterObject {
 public:
  static constexpr CmpiCpp::NameLiteral kClassName = "ZEB_EthernetPortController";

  ZEB_EthernetPortController(const Logger& logger, const std::string& nameSpace, const std::uint32_t& number,
                             const AdapterRecord& adapter);

  CmpiCpp::CmpiInstance makeInstance() override;
  CmpiCpp::CmpiInstance makeInstanceOf(CmpiCpp::CmpiPropertyList wanted) override;
};

}  // namespace ZEB
