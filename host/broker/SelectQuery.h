// The little that is read of an indication filter's query.
#pragma once

#include <optional>
#include <string_view>

#include "broker/Objects.h"

namespace ZebHost {

/// `SELECT … FROM class [WHERE …]`.
struct SelectQuery {
  std::string_view className;
  bool hasCondition = false;
};

/// Nothing when the text is no such query.
std::optional<SelectQuery> parseSelect(std::string_view query);

/// Null when the query cannot be read.
SelectExp* makeSelectExp(Arena& arena, const ClassRepository& repository, std::string_view query);

}  // namespace ZebHost
