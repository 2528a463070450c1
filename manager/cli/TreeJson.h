// Parts of a tree as they stand in its document.
#pragma once

#include <nlohmann/json.hpp>

#include "tree/Tree.h"

namespace ZebManager {

nlohmann::ordered_json jsonOf(const TreeStatus& status);
nlohmann::ordered_json jsonOf(const TreeCard& card);
nlohmann::ordered_json jsonOf(const TreeTeam& team);

}  // namespace ZebManager
