// Patterns of LIKE: % stands for any text, _ for one character, [a-z] and [^a-z] for one of a set.
#pragma once

#include <string_view>

namespace ZebManager {

/// Whether all of the text (UTF-8) is as the pattern says. Within a set nothing but '-' and a '^' at its
/// begin has a meaning of its own; a set that is not closed is the character '['. Takes at most as many steps
/// as the lengths multiplied.
bool isLike(std::string_view text, std::string_view pattern);

}  // namespace ZebManager
