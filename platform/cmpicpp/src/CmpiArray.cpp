#include "cmpicpp/CmpiArray.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "cmpicpp/CmpiData.h"
#include "cmpicpp/CmpiStatus.h"

namespace CmpiCpp {

CmpiArray::CmpiArray(std::size_t size, CMPIType elementType)
    : _elementType(elementType),
      _size(size),
      _elements(std::make_shared<CmpiData[]>(size, CmpiData::null(elementType))) {}

std::span<const CmpiData> CmpiArray::elements() const {
  return {_elements.get(), size()};
}

void CmpiArray::setElementAt(std::size_t index, CmpiData value) {
  if (index >= size()) throw CmpiStatus(CMPI_RC_ERR_INVALID_PARAMETER, "array index past the end");
  if (value.type() != _elementType)
    throw CmpiStatus(CMPI_RC_ERR_TYPE_MISMATCH, "array element of another type");
  if (_elements.use_count() > 1) {
    const auto shared = std::exchange(_elements, std::make_shared<CmpiData[]>(_size));
    std::copy_n(shared.get(), _size, _elements.get());
  }
  _elements[static_cast<std::ptrdiff_t>(index)] = std::move(value);
}

const CmpiData& CmpiArray::operator[](std::size_t index) const {
  if (index >= size()) throw std::out_of_range("array index past the end");
  return _elements[static_cast<std::ptrdiff_t>(index)];
}

bool operator==(const CmpiArray& a, const CmpiArray& b) {
  return a._elementType == b._elementType && std::ranges::equal(a.elements(), b.elements());
}

}  // namespace CmpiCpp
