// Which interfaces of a recording have to do with each other.
#pragma once

#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace ZebManager {

/// Whether interfaces are told apart or refer to each other by that fact of a recording
/// ("links.masterIndex").
bool isReference(std::string_view fact);

/// The places in the list of those with such names, of those that they are stacked on, teamed with or on one
/// card with, and so on, the nearest first, filled up with others: `most` in all, in the order of the list.
std::vector<std::size_t> nearLinks(const nlohmann::ordered_json& links, const std::set<std::string>& names,
                                   std::size_t most);

}  // namespace ZebManager
