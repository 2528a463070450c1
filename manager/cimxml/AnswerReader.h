// Answers, read back into what they were written from.
#pragma once

#include <string_view>

#include "broker/ProviderCalls.h"

namespace ZebManager {

/// The instances, names or return value of an answer, or its error. Output arguments of `method` go to
/// `out`. Paths are of this machine. Throws ManagerError for what is no answer.
Reply readAnswer(std::string document, const ClassRepository& repository, std::string_view nameSpace,
                 const MethodDef* method = nullptr, const Args* out = nullptr);

/// What an INSTANCE element on its own says. Throws ManagerError.
const Instance* readInstanceElement(std::string element, Arena& arena, const ClassRepository& repository,
                                    std::string_view nameSpace);

}  // namespace ZebManager
