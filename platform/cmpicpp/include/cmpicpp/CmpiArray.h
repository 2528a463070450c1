#pragma once

#include <cstddef>
#include <vector>

#include "cmpi/cmpi.h"

namespace CmpiCpp {

class CmpiData;

/// Elements of one CMPI type. New elements are null.
class CmpiArray {
 public:
  CmpiArray(std::size_t size, CMPIType elementType);
  CmpiArray(const CmpiArray&);
  CmpiArray(CmpiArray&&) noexcept;
  CmpiArray& operator=(const CmpiArray&);
  CmpiArray& operator=(CmpiArray&&) noexcept;
  ~CmpiArray();

  CMPIType elementType() const { return _elementType; }
  std::size_t size() const;

  /// Throws `CmpiStatus` with `CMPI_RC_ERR_TYPE_MISMATCH` for a value of another type and with
  /// `CMPI_RC_ERR_INVALID_PARAMETER` for an index past the end.
  void setElementAt(std::size_t index, CmpiData value);
  const CmpiData& operator[](std::size_t index) const;

  const std::vector<CmpiData>& elements() const { return _elements; }

  friend bool operator==(const CmpiArray& a, const CmpiArray& b);

 private:
  CMPIType _elementType;
  std::vector<CmpiData> _elements;
};

}  // namespace CmpiCpp
