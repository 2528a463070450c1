// Evaluates conditions, in the logic of three values that SQL has.
#include "query/Condition.h"

#include <compare>

#include "query/ConditionNodes.h"
#include "query/LikePattern.h"
#include "values/DateTimeText.h"
#include "values/ObjectPathText.h"
#include "values/Values.h"

namespace ZebManager {
namespace {

enum class Verdict { False, Unknown, True };

/// Nothing, or what can be compared.
using Value = std::variant<std::monostate, bool, QueryNumber, std::string, DateTimeBody>;

Verdict verdictOf(bool truth) {
  return truth ? Verdict::True : Verdict::False;
}

Verdict opposite(Verdict verdict) {
  if (verdict == Verdict::Unknown) return verdict;
  return verdictOf(verdict == Verdict::False);
}

Value valueOf(const CMPIData& data) {
  if (isNull(data) || isArray(data.type)) return {};
  if (const auto range = integerRange(data.type)) {
    return range->min < 0 ? static_cast<QueryNumber>(signedOf(data))
                          : static_cast<QueryNumber>(unsignedOf(data));
  }
  switch (data.type) {
    case CMPI_boolean:
      return data.value.boolean != 0;
    case CMPI_real32:
      return static_cast<QueryNumber>(data.value.real32);
    case CMPI_real64:
      return static_cast<QueryNumber>(data.value.real64);
    case CMPI_char16:
      return utf8Of(data.value.char16);
    case CMPI_string:
      return std::string(textOf(data.value.string));
    case CMPI_dateTime:
      return as<DateTime>(data.value.dateTime)->body();
    case CMPI_ref:
      return formatPath(as<ObjectPath>(data.value.ref)->body());
    default:
      return {};
  }
}

std::partial_ordering order(bool a, bool b) {
  return a == b ? std::partial_ordering::equivalent : std::partial_ordering::unordered;
}
std::partial_ordering order(QueryNumber a, QueryNumber b) {
  return a <=> b;
}
std::partial_ordering order(const std::string& a, const std::string& b) {
  return a <=> b;
}
std::partial_ordering order(const DateTimeBody& a, const DateTimeBody& b) {
  return a.interval == b.interval ? a.microseconds <=> b.microseconds : std::partial_ordering::unordered;
}

Verdict compare(std::partial_ordering order, Comparison comparison) {
  switch (comparison) {
    case Comparison::Equal:
      return verdictOf(order == 0);
    case Comparison::NotEqual:
      return verdictOf(order != 0);
    case Comparison::Less:
      return verdictOf(order < 0);
    case Comparison::LessEqual:
      return verdictOf(order <= 0);
    case Comparison::Greater:
      return verdictOf(order > 0);
    case Comparison::GreaterEqual:
      return verdictOf(order >= 0);
  }
  return Verdict::Unknown;
}

/// Datetimes are compared with texts that hold one.
void readDateTime(Value& text, const Value& other) {
  if (!std::holds_alternative<DateTimeBody>(other) || !std::holds_alternative<std::string>(text)) return;
  const auto parsed = parseDateTime(std::get<std::string>(text));
  text = parsed ? Value(*parsed) : Value();
}

Verdict compare(Value a, Value b, Comparison comparison) {
  readDateTime(a, b);
  readDateTime(b, a);
  if (a.index() != b.index()) return Verdict::Unknown;
  return std::visit(
      [&](const auto& left) {
        using Type = std::decay_t<decltype(left)>;
        if constexpr (std::is_same_v<Type, std::monostate>) {
          return Verdict::Unknown;
        } else {
          const auto ordered = order(left, std::get<Type>(b));
          const bool equality = comparison == Comparison::Equal || comparison == Comparison::NotEqual;
          const bool bothTruths = std::is_same_v<Type, bool>;
          if (ordered == std::partial_ordering::unordered && !(bothTruths && equality))
            return Verdict::Unknown;
          return compare(ordered, comparison);
        }
      },
      a);
}

/// The class in the text of an object path: between the namespace and the keys.
std::string_view classInPath(std::string_view path) {
  if (path.starts_with("//")) path.remove_prefix(std::min(path.find('/', 2), path.size()));
  path = path.substr(0, path.find_first_of(".=\""));
  const std::size_t colon = path.rfind(':');
  return colon == std::string_view::npos ? path : path.substr(colon + 1);
}

class Evaluation {
 public:
  Evaluation(const Instance& instance, const ClassRepository& repository)
      : _instance(instance.body()), _repository(repository) {}

  bool isA(std::string_view className) const { return _repository.isA(_instance.classDef->name, className); }
  Verdict judge(const Condition& condition) const;

 private:
  CMPIData data(const PropertyName& property) const;
  Value value(const Operand& operand) const;
  Verdict judgeIsA(const PropertyName& subject, std::string_view className) const;

  const InstanceBody& _instance;
  const ClassRepository& _repository;
};

CMPIData Evaluation::data(const PropertyName& property) const {
  if (!property.scope.empty() && !isA(property.scope)) return nullOf(CMPI_null);
  const NamedValue* const found = _instance.properties.find(property.name);
  if (!found) return nullOf(CMPI_null);
  if (!property.index) return found->data;
  if (isNull(found->data) || !isArray(found->data.type)) return nullOf(CMPI_null);
  const ArrayBody& array = as<Array>(found->data.value.array)->body();
  return *property.index < array.count ? array.elements[*property.index] : nullOf(array.elementType);
}

Value Evaluation::value(const Operand& operand) const {
  return std::visit(
      [this](const auto& held) -> Value {
        using Type = std::decay_t<decltype(held)>;
        if constexpr (std::is_same_v<Type, PropertyName>) {
          return valueOf(data(held));
        } else if constexpr (std::is_same_v<Type, std::string_view>) {
          return std::string(held);
        } else {
          return held;
        }
      },
      operand);
}

Verdict Evaluation::judgeIsA(const PropertyName& subject, std::string_view className) const {
  const bool property = !subject.scope.empty() || _instance.classDef->property(subject.name);
  if (!property) return _repository.find(subject.name) ? verdictOf(isA(className)) : Verdict::Unknown;
  const Value path = valueOf(data(subject));
  if (!std::holds_alternative<std::string>(path)) return Verdict::Unknown;
  return verdictOf(_repository.isA(classInPath(std::get<std::string>(path)), className));
}

Verdict Evaluation::judge(const Condition& condition) const {
  switch (condition.kind) {
    case Condition::Kind::And: {
      const Verdict left = judge(*condition.left);
      return left == Verdict::False ? left : std::min(left, judge(*condition.right));
    }
    case Condition::Kind::Or: {
      const Verdict left = judge(*condition.left);
      return left == Verdict::True ? left : std::max(left, judge(*condition.right));
    }
    case Condition::Kind::Not:
      return opposite(judge(*condition.left));
    case Condition::Kind::Compare:
      return compare(value(condition.subject), value(condition.object), condition.comparison);
    case Condition::Kind::Like: {
      const Value text = value(condition.subject);
      if (!std::holds_alternative<std::string>(text)) return Verdict::Unknown;
      return verdictOf(isLike(std::get<std::string>(text), std::get<std::string_view>(condition.object)));
    }
    case Condition::Kind::IsA:
      return judgeIsA(std::get<PropertyName>(condition.subject),
                      std::get<std::string_view>(condition.object));
    case Condition::Kind::IsNull:
      return verdictOf(isNull(data(std::get<PropertyName>(condition.subject))));
  }
  return Verdict::Unknown;
}

}  // namespace

bool matches(const Query& query, const Instance& instance, const ClassRepository& repository) {
  const Evaluation evaluation(instance, repository);
  if (!evaluation.isA(query.className)) return false;
  return !query.condition || evaluation.judge(*query.condition) == Verdict::True;
}

}  // namespace ZebManager
