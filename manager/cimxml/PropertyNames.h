// Lists of properties, which a client can make as long as a request may be.
#pragma once

#include <string>
#include <vector>

#include "schema/ClassRepository.h"

namespace ZebManager {

/// Those that one of the classes has, each once: nothing that is done for each name costs more than the
/// classes have properties.
std::vector<std::string> thoseOf(const std::vector<const ClassDef*>& classes,
                                 const std::vector<std::string>& names);

/// Each once.
std::vector<std::string> distinct(const std::vector<std::string>& names);

/// Classes whose instances can come with one of this class; without one, all that there are.
std::vector<const ClassDef*> classesBelow(const ClassRepository& repository, const std::string& className);

}  // namespace ZebManager
