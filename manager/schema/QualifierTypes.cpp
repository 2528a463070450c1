#include "schema/QualifierTypes.h"

#include <algorithm>
#include <array>

#include "schema/Caseless.h"

namespace ZebManager {
namespace {

constexpr unsigned kOnAnyClass = kOnClass | kOnAssociation | kOnIndication;
constexpr unsigned kOnElement = kOnProperty | kOnReference | kOnMethod | kOnParameter;
constexpr unsigned kOnValue = kOnProperty | kOnMethod | kOnParameter;
constexpr auto kFlag = QualifierShape::Flag;
constexpr auto kText = QualifierShape::Text;
constexpr auto kList = QualifierShape::List;

/// Name, shape, scopes, default, overridable, to subclasses, translatable.
constexpr std::array kTypes = {
    QualifierType{"Abstract", kFlag, kOnAnyClass, false, true, false},
    QualifierType{"ArrayType", kText, kOnProperty | kOnParameter, false, false},
    QualifierType{"Association", kFlag, kOnAssociation, false, false},
    QualifierType{"Description", kText, kOnAnyClass | kOnElement, false, true, true, true},
    QualifierType{"In", kFlag, kOnParameter, true, false},
    QualifierType{"Indication", kFlag, kOnClass | kOnIndication, false, false},
    QualifierType{"Key", kFlag, kOnProperty | kOnReference, false, false},
    QualifierType{"Out", kFlag, kOnParameter, false, false},
    QualifierType{"Override", kText, kOnProperty | kOnReference | kOnMethod, false, true, false},
    QualifierType{"Required", kFlag, kOnElement, false, false},
    QualifierType{"Static", kFlag, kOnMethod, false, false},
    QualifierType{"Units", kText, kOnValue, false, true, true, true},
    QualifierType{"ValueMap", kList, kOnValue},
    QualifierType{"Values", kList, kOnValue, false, true, true, true},
    QualifierType{"Version", kText, kOnAnyClass, false, true, false, true},
    QualifierType{"Write", kFlag, kOnProperty},
};

}  // namespace

std::span<const QualifierType> qualifierTypes() {
  return kTypes;
}

const QualifierType* findQualifierType(std::string_view name) {
  const auto* const found = std::find_if(
      kTypes.begin(), kTypes.end(), [&](const QualifierType& type) { return sameName(type.name, name); });
  return found == kTypes.end() ? nullptr : found;
}

}  // namespace ZebManager
