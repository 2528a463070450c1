#pragma once

#include <cstddef>
#include <memory>
#include <span>

#include "cmpi/cmpi.h"

namespace CmpiCpp {

class CmpiData;

/// Elements of one CMPI type. New elements are null. Copies share them until one is changed.
class CmpiArray {
 public:
  CmpiArray(std::size_t size, CMPIType elementType);

  CMPIType elementType() const { return _elementType; }
  /// 0 for one that was moved from.
  std::size_t size() const { return _elements ? _size : 0; }

  /// Throws `CmpiStatus` with `CMPI_RC_ERR_TYPE_MISMATCH` for a value of another type and with
  /// `CMPI_RC_ERR_INVALID_PARAMETER` for an index past the end.
  void setElementAt(std::size_t index, CmpiData value);
  const CmpiData& operator[](std::size_t index) const;

  std::span<const CmpiData> elements() const;

  friend bool operator==(const CmpiArray& a, const CmpiArray& b);

 private:
  CMPIType _elementType;
  std::size_t _size;
  std::shared_ptr<CmpiData[]> _elements;
};

}  // namespace CmpiCpp
