#pragma once

#include "classes/team/AdapterObject.h"

namespace ZEB {

/// The slot, or the place on the system board, where an adapter sits.
class ZEB_EthernetControllerLocation : public AdapterObject {
 public:
  static constexpr CmpiCpp::NameLiteral kClassName = "ZEB_EthernetControllerLocation";

  ZEB_EthernetControllerLocation(const Logger& logger, const std::string& nameSpace,
                                 const std::uint32_t& number, const AdapterRecord& adapter);

  CmpiCpp::CmpiInstance makeInstance() override;
};

}  // namespace ZEB
