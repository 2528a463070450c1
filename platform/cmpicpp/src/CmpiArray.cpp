#include "cmpicpp/CmpiArray.h"

#include "cmpicpp/CmpiData.h"
#include "cmpicpp/CmpiStatus.h"

namespace CmpiCpp {

CmpiArray::CmpiArray(std::size_t size, CMPIType elementType)
    : _elementType(elementType), _elements(size, CmpiData::null(elementType)) {}
CmpiArray::CmpiArray(const CmpiArray&) = default;
CmpiArray::CmpiArray(CmpiArray&&) noexcept = default;
CmpiArray& CmpiArray::operator=(const CmpiArray&) = default;
CmpiArray& CmpiArray::operator=(CmpiArray&&) noexcept = default;
CmpiArray::~CmpiArray() = default;

std::size_t CmpiArray::size() const {
  return _elements.size();
}

void CmpiArray::setElementAt(std::size_t index, CmpiData value) {
  if (index >= _elements.size()) throw CmpiStatus(CMPI_RC_ERR_INVALID_PARAMETER, "array index past the end");
  if (value.type() != _elementType)
    throw CmpiStatus(CMPI_RC_ERR_TYPE_MISMATCH, "array element of another type");
  _elements[index] = std::move(value);
}

const CmpiData& CmpiArray::operator[](std::size_t index) const {
  return _elements.at(index);
}

bool operator==(const CmpiArray& a, const CmpiArray& b) {
  return a._elementType == b._elementType && a._elements == b._elements;
}

}  // namespace CmpiCpp
