// What a condition consists of.
#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <string_view>
#include <variant>

namespace ZebManager {

/// Holds every integer of 64 bits exactly.
using QueryNumber = long double;
static_assert(std::numeric_limits<QueryNumber>::digits >= 64);

/// `[Scope.]Name[[index]]`
struct PropertyName {
  std::string_view scope;  ///< a class; empty when none is named
  std::string_view name;
  std::optional<std::uint32_t> index;
};

using Operand = std::variant<std::monostate, bool, QueryNumber, std::string_view, PropertyName>;

enum class Comparison { Equal, NotEqual, Less, LessEqual, Greater, GreaterEqual };

/// A node; lives in an arena with what it refers to.
struct Condition {
  enum class Kind { And, Or, Not, Compare, Like, IsA, IsNull };

  Kind kind;
  const Condition* left = nullptr;   ///< of And, Or and Not
  const Condition* right = nullptr;  ///< of And and Or
  Operand subject = {};              ///< of the others
  Operand object = {};               ///< of Compare; a text for the pattern of Like and the class of IsA
  Comparison comparison = Comparison::Equal;
};

}  // namespace ZebManager
