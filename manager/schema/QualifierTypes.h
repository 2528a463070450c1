// The qualifiers that a schema may use.
#pragma once

#include <span>
#include <string_view>

namespace ZebManager {

/// What a qualifier stands before; a bit each.
enum QualifierScope : unsigned {
  kOnClass = 1,
  kOnProperty = 2,
  kOnReference = 4,
  kOnMethod = 8,
  kOnParameter = 16,
  kOnAssociation = 32,
  kOnIndication = 64,
};

enum class QualifierShape { Flag, Text, List };

struct QualifierType {
  std::string_view name;
  QualifierShape shape;
  unsigned scopes;
  bool byDefault = false;   ///< of a flag; texts have none
  bool overridable = true;  ///< a subclass may say something else
  bool toSubclass = true;   ///< a subclass has it, too
  bool translatable = false;
};

/// By name.
std::span<const QualifierType> qualifierTypes();
/// Null when there is none.
const QualifierType* findQualifierType(std::string_view name);

}  // namespace ZebManager
