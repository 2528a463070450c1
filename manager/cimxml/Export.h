// Indications as listeners get them.
#pragma once

#include <string>
#include <string_view>

#include "values/Objects.h"

namespace ZebManager {

/// An INSTANCE element.
std::string instanceElement(const Instance& instance);

/// A whole request that exports one indication; `id` is the message's.
std::string exportMessage(std::string_view id, std::string_view instanceElement);

}  // namespace ZebManager
