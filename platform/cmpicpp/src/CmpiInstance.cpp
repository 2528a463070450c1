#include "cmpicpp/CmpiInstance.h"

#include <algorithm>

#include "cmpicpp/CmpiStatus.h"

namespace CmpiCpp {

bool isNamed(CmpiPropertyList names, std::string_view property) {
  constexpr int kCase = 'a' - 'A';
  for (CmpiPropertyList name = names; *name; ++name) {
    // Nearly all differ in their first letter.
    const bool mayBe = property.empty() || ((**name ^ property.front()) & ~kCase) == 0;
    if (mayBe && CmpiName::equal(property, *name)) return true;
  }
  return false;
}

void CmpiInstance::addProperty(CmpiName name, CmpiData value) {
  const auto there = std::find_if(_properties.begin(), _properties.end(),
                                  [&](const Property& property) { return property.name == name; });
  if (there == _properties.end()) {
    _properties.push_back({std::move(name), std::move(value)});
  } else {
    there->value = std::move(value);
  }
}

const CmpiData* CmpiInstance::findProperty(std::string_view name) const {
  const auto found = std::find_if(_properties.begin(), _properties.end(), [&](const Property& property) {
    return CmpiName::equal(property.name.view(), name);
  });
  return found == _properties.end() ? nullptr : &found->value;
}

const CmpiData& CmpiInstance::getProperty(std::string_view name) const {
  if (const CmpiData* value = findProperty(name)) return *value;
  throw CmpiStatus(CMPI_RC_ERR_NO_SUCH_PROPERTY, "no property " + std::string(name));
}

void CmpiInstance::keepOnly(CmpiPropertyList names) {
  if (!names) return;
  std::erase_if(_properties, [&](const Property& property) { return !isNamed(names, property.name.view()); });
}

}  // namespace CmpiCpp
