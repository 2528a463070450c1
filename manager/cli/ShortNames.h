// What people write in the place of paths and class names.
#pragma once

#include <string>

#include "cli/Session.h"

namespace ZebManager {

/// The instance that is meant: by a path of which keys may be left out, by the name of an interface, a slot
/// or a MAC address, or by a class that has one instance. Throws ManagerError, which lists what it could be.
ObjectPath& instanceMeant(Session& session, Arena& arena, const std::string& word);

/// The class that is meant: by its name, with or without "ZEB_", or in a word such as "ports". Throws
/// ManagerError.
const ClassDef& classMeant(const ClassRepository& repository, const std::string& word);

/// What can be written for classes and for instances, for a shell that completes words.
std::vector<std::string> classWords(const ClassRepository& repository);
std::vector<std::string> instanceWords(Namespace& model);

}  // namespace ZebManager
