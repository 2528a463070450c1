#include "broker/SelectQuery.h"

#include "query/Condition.h"

namespace ZebManager {

SelectExpBody* makeSelectExpBody(Arena& arena, const ClassRepository& repository, std::string_view query) {
  const Query* const select = arena.make<Query>(parseQuery(arena, query));
  return arena.make<SelectExpBody>(arena.copy(query), select, &repository);
}

SelectExp* makeSelectExp(Arena& arena, const ClassRepository& repository, std::string_view query) {
  try {
    return makeHandle<SelectExp>(arena, makeSelectExpBody(arena, repository, query));
  } catch (const QueryError&) {
    return nullptr;
  }
}

}  // namespace ZebManager
