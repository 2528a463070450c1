// The text form of object paths: //host/namespace:Class.Key="text",Number=5,Flag=TRUE,Ref="a path, escaped".
#pragma once

#include <string>
#include <string_view>

#include "values/ManagerError.h"
#include "values/Objects.h"

namespace ZebManager {

/// Keys in the order in which they were added; host and namespace only when they are set.
std::string formatPath(const PathBody& path);

/// A single value as it stands behind a key.
std::string formatKeyValue(const CMPIData& value);

/// Whether all keys have to be there.
enum class KeysGiven { All, Some };

/// Reads the text form of an instance path. Key types come from the schema; namespace and host may be left
/// out, the namespace is then `nameSpace`. Throws ManagerError that names the path and what was expected: an
/// unknown class, another namespace, keys that are missing, unknown, given twice or of the wrong type.
ObjectPath* parsePath(Arena& arena, const ClassRepository& repository, std::string_view nameSpace,
                      std::string_view text, KeysGiven given = KeysGiven::All);

/// The class that a name stands for. Throws ManagerError.
const ClassDef& requireClass(const ClassRepository& repository, std::string_view className);

/// A value of a type from its text without quotes. Throws ManagerError that says what was expected of `what`.
CMPIData parseScalar(Arena& arena, CMPIType type, std::string_view text, const std::string& what);

}  // namespace ZebManager
