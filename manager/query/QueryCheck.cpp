// Holds queries against a schema.
#include <algorithm>

#include "query/Condition.h"
#include "query/ConditionNodes.h"
#include "values/DateTimeText.h"

namespace ZebManager {
namespace {

/// What can be compared with each other.
enum class Kind { Number, Text, Truth, Moment, Array };

const char* nameOf(Kind kind) {
  constexpr const char* kNames[] = {"a number", "a text", "TRUE or FALSE", "a datetime", "an array"};
  return kNames[static_cast<std::size_t>(kind)];
}

Kind kindOf(CMPIType type) {
  if (isArray(type)) return Kind::Array;
  if (integerRange(type) || type == CMPI_real32 || type == CMPI_real64) return Kind::Number;
  return type == CMPI_boolean ? Kind::Truth : type == CMPI_dateTime ? Kind::Moment : Kind::Text;
}

class QueryCheck {
 public:
  QueryCheck(const ClassDef& root, const ClassRepository& repository)
      : _root(root), _repository(repository) {}

  void check(const Condition& condition) const;
  const PropertyDef& require(const PropertyName& property) const;

 private:
  void checkComparison(const Condition& condition) const;
  void checkIsA(const Condition& condition) const;
  Kind kindOfOperand(const Operand& operand) const;
  const PropertyDef* find(const ClassDef& within, std::string_view name) const;

  const ClassDef& _root;
  const ClassRepository& _repository;
};

/// In the class, or in what descends from it: a filter on a superclass may ask for what its subclasses add.
const PropertyDef* QueryCheck::find(const ClassDef& within, std::string_view name) const {
  if (const PropertyDef* found = within.property(name)) return found;
  for (const ClassDef* subclass : within.subclasses) {
    if (const PropertyDef* found = find(*subclass, name)) return found;
  }
  return nullptr;
}

const PropertyDef& QueryCheck::require(const PropertyName& property) const {
  const ClassDef* within = &_root;
  if (!property.scope.empty()) {
    within = _repository.find(property.scope);
    if (!within || !(within->isA(_root) || _root.isA(*within))) {
      throw QueryError("'" + std::string(property.scope) + "' is no class that " + _root.name +
                       " derives from or that derives from it");
    }
  }
  const PropertyDef* const found = find(*within, property.name);
  if (!found) throw QueryError(within->name + " has no property '" + std::string(property.name) + "'");
  if (property.index && !isArray(found->type)) throw QueryError("'" + found->name + "' is no array");
  return *found;
}

Kind QueryCheck::kindOfOperand(const Operand& operand) const {
  if (std::holds_alternative<bool>(operand)) return Kind::Truth;
  if (std::holds_alternative<QueryNumber>(operand)) return Kind::Number;
  if (std::holds_alternative<std::string_view>(operand)) return Kind::Text;
  const auto& property = std::get<PropertyName>(operand);
  const CMPIType type = require(property).type;
  return kindOf(property.index ? elementType(type) : type);
}

bool isDateTimeText(const Operand& operand) {
  const auto* const text = std::get_if<std::string_view>(&operand);
  return text && parseDateTime(*text);
}

void QueryCheck::checkComparison(const Condition& condition) const {
  Kind left = kindOfOperand(condition.subject);
  Kind right = kindOfOperand(condition.object);
  if (right == Kind::Moment && isDateTimeText(condition.subject)) left = right;
  if (left == Kind::Moment && isDateTimeText(condition.object)) right = left;
  if (left != right) throw QueryError(std::string(nameOf(left)) + " is compared with " + nameOf(right));
  const bool equality =
      condition.comparison == Comparison::Equal || condition.comparison == Comparison::NotEqual;
  if (left == Kind::Array)
    throw QueryError("an array is compared: expected one of its elements, as in Name[0]");
  if (left == Kind::Truth && !equality) throw QueryError("TRUE and FALSE have no order: expected = or <>");
}

void QueryCheck::checkIsA(const Condition& condition) const {
  const auto className = std::get<std::string_view>(condition.object);
  if (!_repository.find(className)) throw QueryError("unknown class '" + std::string(className) + "'");
  const auto& subject = std::get<PropertyName>(condition.subject);
  const ClassDef* const self = subject.scope.empty() ? _repository.find(subject.name) : nullptr;
  if (self && (self->isA(_root) || _root.isA(*self))) return;
  if (kindOfOperand(condition.subject) != Kind::Text) {
    throw QueryError("'" + std::string(subject.name) + "' holds no object path");
  }
}

void QueryCheck::check(const Condition& condition) const {
  switch (condition.kind) {
    case Condition::Kind::And:
    case Condition::Kind::Or:
      check(*condition.left);
      return check(*condition.right);
    case Condition::Kind::Not:
      return check(*condition.left);
    case Condition::Kind::Compare:
      return checkComparison(condition);
    case Condition::Kind::Like:
      if (kindOfOperand(condition.subject) != Kind::Text) throw QueryError("LIKE takes a text on its left");
      return;
    case Condition::Kind::IsA:
      return checkIsA(condition);
    case Condition::Kind::IsNull:
      require(std::get<PropertyName>(condition.subject));
  }
}

}  // namespace

void checkQuery(const Query& query, const ClassRepository& repository, Selects selects) {
  const ClassDef* const root = repository.find(query.className);
  if (!root) throw QueryError("unknown class '" + std::string(query.className) + "'");
  const bool indications = selects == Selects::Indications;
  if (root->indication != indications) {
    throw QueryError("'" + root->name + "' is " + (indications ? "no" : "a") + " class of indications");
  }
  const QueryCheck check(*root, repository);
  for (const std::string_view name : query.properties) check.require({{}, name, {}});
  if (query.condition) check.check(*query.condition);
}

}  // namespace ZebManager
