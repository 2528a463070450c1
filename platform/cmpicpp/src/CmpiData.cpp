#include "cmpicpp/CmpiData.h"

#include <functional>
#include <optional>
#include <utility>

#include "cmpicpp/CmpiStatus.h"

namespace CmpiCpp {
namespace {

bool isSigned(CMPIType type) {
  return type >= CMPI_sint8 && type <= CMPI_sint64;
}
bool isUnsigned(CMPIType type) {
  return type >= CMPI_uint8 && type <= CMPI_uint64;
}

/// An integer as sign and magnitude, so that every width and sign compares.
std::optional<std::pair<bool, std::uint64_t>> integer(const CmpiData& data) {
  if (data.isNull()) return std::nullopt;
  if (isUnsigned(data.type())) return std::pair(false, data.asUnsigned());
  if (!isSigned(data.type())) return std::nullopt;
  const std::int64_t value = data.asSigned();
  const auto bits = static_cast<std::uint64_t>(value);
  return std::pair(value < 0, value < 0 ? 0 - bits : bits);
}

}  // namespace

CmpiData CmpiData::null(CMPIType type) {
  CmpiData data;
  data._type = type;
  return data;
}

void CmpiData::throwMismatch() {
  throw CmpiStatus(CMPI_RC_ERR_TYPE_MISMATCH, "value of another type");
}

bool CmpiData::sameKey(const CmpiData& a, const CmpiData& b) {
  const auto left = integer(a), right = integer(b);
  return left || right ? left == right : a == b;
}

std::size_t CmpiData::keyHash() const {
  if (const auto number = integer(*this)) return std::hash<std::uint64_t>{}(number->second);
  if (const auto* text = std::get_if<std::string>(&_value)) return std::hash<std::string>{}(*text);
  if (const auto* path = std::get_if<CmpiObjectPath>(&_value)) return path->hash();
  return _type;
}

}  // namespace CmpiCpp
