// An alert as pages get it.
#pragma once

#include <chrono>
#include <string>

#include "values/Objects.h"

namespace ZebManager {

/// JSON in one line: when, about what, how bad, what happened, where, and what is recommended. `number`: of
/// the alert, from 1.
std::string jsonOfAlert(const Instance& alert, std::chrono::system_clock::time_point arrival,
                        std::uint64_t number);

}  // namespace ZebManager
