#pragma once

#include <cstdint>

#include "classes/port/ManagedObject.h"
#include "ethernet/EthernetAdapterDataObject.h"

namespace ZEB {

/// What the property tables of an adapter's classes read.
struct AdapterReading {
  std::uint32_t number;
  const EthernetAdapterDataObject& record;
};

/// The frame of the classes that describe an adapter, of which each adapter has one instance: its number,
/// from 1, and a copy of its record.
class AdapterObject : public ManagedObject {
 protected:
  AdapterObject(const Logger& logger, const std::string& nameSpace, CmpiCpp::NameLiteral className, Keys keys,
                std::uint32_t number, const EthernetAdapterDataObject& adapter)
      : ManagedObject(logger, nameSpace, className, std::move(keys)), _number(number), _adapter(adapter) {}

  AdapterReading reading() const { return {_number, _adapter}; }

 private:
  const std::uint32_t _number;
  const EthernetAdapterDataObject _adapter;
};

}  // namespace ZEB
