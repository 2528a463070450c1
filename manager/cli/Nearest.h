// Words that somebody meant.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ZebManager {

/// "; did you mean 'x'?" for the known word that is nearest; empty when none is near.
std::string suggestion(std::string_view word, const std::vector<std::string>& known);

/// The first of them in a row, and how many more there are.
std::string listed(const std::vector<std::string>& words);

}  // namespace ZebManager
