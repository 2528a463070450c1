// Select expressions: the filters that a provider sees.
#pragma once

#include <string_view>

#include "values/Objects.h"

namespace ZebManager {

struct Query;

struct SelectExpBody {
  std::string_view text;
  const Query* query = nullptr;  ///< the text, read
  const ClassRepository* repository = nullptr;
};

extern const CMPISelectExpFT kSelectExpFT;
using SelectExp = Handle<CMPISelectExp, SelectExpBody, &kSelectExpFT>;

/// Null when the query cannot be read.
SelectExp* makeSelectExp(Arena& arena, const ClassRepository& repository, std::string_view query);

/// A body that shares nothing with the one it is made from. Throws QueryError when the query cannot be read.
SelectExpBody* makeSelectExpBody(Arena& arena, const ClassRepository& repository, std::string_view query);

}  // namespace ZebManager
