#pragma once

#include <cstdint>
#include <memory>

#include "classes/port/Known.h"
#include "classes/port/ManagedObject.h"
#include "ethernet/EthernetAdapterDataObject.h"

namespace ZEB {

/// An adapter's record with its ports, which all copies share.
class AdapterRecord {
 public:
  AdapterRecord(EthernetAdapterDataObject adapter)
      : _adapter(std::make_shared<EthernetAdapterDataObject>(std::move(adapter))) {}

  operator const EthernetAdapterDataObject&() const { return *_adapter; }
  EthernetAdapterDataObject refreshed() const { return ZEB::refreshed(*_adapter); }

 private:
  std::shared_ptr<EthernetAdapterDataObject> _adapter;
};

/// What the property tables of an adapter's classes read.
struct AdapterReading {
  std::uint32_t number;
  const EthernetAdapterDataObject record;
};

/// The frame of the classes that describe an adapter, of which each adapter has one instance: its number,
/// from 1, and its record.
class AdapterObject : public ManagedObject {
 protected:
  AdapterObject(const Logger& logger, const std::string& nameSpace, CmpiCpp::NameLiteral className, Keys keys,
                std::uint32_t number, const AdapterRecord& adapter)
      : ManagedObject(logger, nameSpace, className, std::move(keys)), _number(number), _adapter(adapter) {}

  /// Of the newest facts.
  AdapterReading reading() const { return {_number, _adapter.refreshed()}; }

 private:
  const std::uint32_t _number;
  const AdapterRecord _adapter;
};

}  // namespace ZEB
