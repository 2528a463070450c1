// Queries of instances and of indications: SELECT * | properties FROM class [WHERE condition], in the
// language of WQL and the part of CQL that selects from one class.
//
// A condition compares properties, numbers, strings, TRUE, FALSE and datetimes (= <> != < <= > >=), tests
// with LIKE, ISA and IS [NOT] NULL, and is built with NOT, AND, OR and parentheses, which bind in this order.
// Keywords and names know no case; texts do. A property may be written with its class before it
// (Class.Property) and with an index (Numbers[0]). ISA takes the name of the query's class for the
// instance itself, or a property that holds an object path.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "values/ManagerError.h"
#include "values/Objects.h"

namespace ZebManager {

/// A query that cannot be read, or that does not fit its class. The text says what was expected and where.
class QueryError : public ManagerError {
 public:
  using ManagerError::ManagerError;
};

struct Condition;

/// A query, in the memory of an arena.
struct Query {
  std::string_view className;
  std::span<const std::string_view> properties;  ///< that are selected; empty for all
  const Condition* condition = nullptr;          ///< null when the query has none
};

/// Reads a query. The result refers to the arena only. Throws QueryError.
Query parseQuery(Arena& arena, std::string_view text);

/// What a query chooses from.
enum class Selects { Indications, Instances };

/// Holds a query against the classes that it speaks of: the class has to be one of what it chooses from, its
/// properties have to be its own or a subclass's, and of a type that suits what they are compared with.
/// Throws QueryError.
void checkQuery(const Query& query, const ClassRepository& repository,
                Selects selects = Selects::Indications);

/// Whether queries are read that are said to be in a language.
bool isQueryLanguage(std::string_view name);

/// Whether an instance is of the query's class and meets its condition. What cannot be compared, such as a
/// property without a value, is neither true nor false, and an instance of which nothing is known does not
/// match. Never throws for what the instance holds; safe from several threads at once.
bool matches(const Query& query, const Instance& instance, const ClassRepository& repository);

/// A query with the memory that it lives in.
class OwnedQuery {
 public:
  /// Throws QueryError.
  explicit OwnedQuery(std::string_view text)
      : _arena(std::make_unique<Arena>()), _query(parseQuery(*_arena, text)) {}

  const Query& query() const { return _query; }
  bool matches(const Instance& instance, const ClassRepository& repository) const {
    return ZebManager::matches(_query, instance, repository);
  }

 private:
  std::unique_ptr<Arena> _arena;
  Query _query;
};

}  // namespace ZebManager
