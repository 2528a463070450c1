#pragma once

#include <cstdint>
#include <string>

#include "classes/port/ManagedObject.h"
#include "ethernet/EthernetPort.h"

namespace ZEB {

/// The traffic and error counters of one port, read anew for every instance.
class ZEB_EthernetStatistics : public ManagedObject {
 public:
  static constexpr CmpiCpp::NameLiteral kClassName = "ZEB_EthernetStatistics";

  ZEB_EthernetStatistics(const Logger& logger, const std::string& nameSpace, const std::uint32_t& number,
                         const std::uint32_t& controllerNumber, const EthernetPort& port);

  CmpiCpp::CmpiInstance makeInstance() override;
  CmpiCpp::CmpiInstance makeInstanceOf(CmpiCpp::CmpiPropertyList wanted) override;

 private:
  struct Reading;
  using P = Properties<Reading>;
  static const PropertyRows<Reading> kProperties;

  const std::uint32_t _controllerNumber;
  EthernetPort _port;
};

}  // namespace ZEB
