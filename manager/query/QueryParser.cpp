// Reads queries. Conditions are read by descent, in the order in which their parts bind.
#include <algorithm>
#include <array>
#include <charconv>
#include <utility>
#include <vector>

#include "query/Condition.h"
#include "query/ConditionNodes.h"
#include "query/QueryLexer.h"
#include "schema/Caseless.h"

namespace ZebManager {
namespace {

constexpr std::array<std::string_view, 4> kLanguages = {"WQL", "CQL", "DMTF:CQL", "CIM:CQL"};
constexpr std::size_t kLongestQuery = 1U << 14;
constexpr int kDeepest = 64;
/// What is read as a chain is checked and judged by descent.
constexpr int kMostTests = 256;

constexpr std::array<std::pair<std::string_view, Comparison>, 7> kComparisons = {{
    {"=", Comparison::Equal},
    {"<>", Comparison::NotEqual},
    {"!=", Comparison::NotEqual},
    {"<", Comparison::Less},
    {"<=", Comparison::LessEqual},
    {">", Comparison::Greater},
    {">=", Comparison::GreaterEqual},
}};

constexpr std::array<std::string_view, 12> kKeywords = {"select", "from", "where", "and",  "or",   "not",
                                                        "like",   "isa",  "is",    "null", "true", "false"};

std::optional<QueryNumber> numberOf(std::string_view text) {
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  const char* const end = text.data() + text.size();
  QueryNumber number = 0;
  if (text.starts_with("0x") || text.starts_with("0X")) {
    std::uint64_t whole = 0;
    const auto [stop, error] = std::from_chars(text.data() + 2, end, whole, 16);
    if (error != std::errc{} || stop != end) return std::nullopt;
    number = static_cast<QueryNumber>(whole);
  } else {
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc{} || stop != end) return std::nullopt;
  }
  return negative ? -number : number;
}

class QueryParser {
 public:
  QueryParser(Arena& arena, std::string_view text) : _arena(arena), _lexer(arena, text) {}

  Query parse();

 private:
  std::span<const std::string_view> readSelection();
  std::string_view readName(const char* expected);
  const Condition* readOr();
  const Condition* readAnd();
  const Condition* readNot();
  const Condition* readNested(bool negated);
  const Condition* readTest();
  const Condition* readComparison(const Operand& subject, Comparison comparison);
  const Condition* readIs(const Operand& subject);
  const Condition* isNull(const Operand& subject, bool negated);
  const Condition* negate(const Condition* condition);
  std::string_view readPattern();
  std::string_view readClass();
  Operand readOperand();
  Operand readPropertyName();

  Arena& _arena;
  QueryLexer _lexer;
  int _depth = 0;
  int _tests = 0;
};

Query QueryParser::parse() {
  Query query;
  if (!_lexer.takeWord("select")) _lexer.fail("SELECT");
  query.properties = readSelection();
  if (!_lexer.takeWord("from")) _lexer.fail("',' or FROM");
  query.className = readName("a class");
  if (_lexer.takeWord("where")) query.condition = readOr();
  if (_lexer.peek().kind != QueryTokenKind::End) {
    _lexer.fail(query.condition ? "AND, OR or the end" : "WHERE or the end");
  }
  return query;
}

/// One asterisk in the list makes it all of them.
std::span<const std::string_view> QueryParser::readSelection() {
  std::vector<std::string_view> names;
  bool all = false;
  do {
    if (_lexer.takeSymbol("*")) {
      all = true;
      continue;
    }
    std::string_view name = readName("'*' or a property");
    if (_lexer.takeSymbol(".")) {
      if (_lexer.takeSymbol("*")) {
        all = true;
        continue;
      }
      name = readName("a property");
    }
    names.push_back(name);
  } while (_lexer.takeSymbol(","));
  if (all) return {};
  auto* const kept = _arena.makeArray<std::string_view>(names.size());
  std::copy(names.begin(), names.end(), kept);
  return {kept, names.size()};
}

std::string_view QueryParser::readName(const char* expected) {
  if (_lexer.peek().kind != QueryTokenKind::Word) _lexer.fail(expected);
  for (const std::string_view keyword : kKeywords) {
    if (_lexer.isWord(keyword)) _lexer.fail(expected);
  }
  return _lexer.next().text;
}

const Condition* QueryParser::readOr() {
  const Condition* left = readAnd();
  while (_lexer.takeWord("or")) left = _arena.make<Condition>(Condition::Kind::Or, left, readAnd());
  return left;
}

const Condition* QueryParser::readAnd() {
  const Condition* left = readNot();
  while (_lexer.takeWord("and")) left = _arena.make<Condition>(Condition::Kind::And, left, readNot());
  return left;
}

const Condition* QueryParser::readNot() {
  if (_lexer.isWord("not")) return readNested(true);
  if (_lexer.isSymbol("(")) return readNested(false);
  return readTest();
}

const Condition* QueryParser::readNested(bool negated) {
  if (++_depth > kDeepest)
    _lexer.fail("at most " + std::to_string(kDeepest) + " conditions within each other");
  _lexer.next();
  const Condition* inner = negated ? negate(readNot()) : readOr();
  if (!negated && !_lexer.takeSymbol(")")) _lexer.fail("AND, OR or ')'");
  --_depth;
  return inner;
}

const Condition* QueryParser::readTest() {
  if (++_tests > kMostTests) _lexer.fail("at most " + std::to_string(kMostTests) + " comparisons");
  const Operand subject = readOperand();
  for (const auto& [symbol, comparison] : kComparisons) {
    if (_lexer.takeSymbol(symbol)) return readComparison(subject, comparison);
  }
  if (!std::holds_alternative<PropertyName>(subject)) _lexer.fail("a comparison");
  if (_lexer.takeWord("is")) return readIs(subject);
  const bool negated = _lexer.takeWord("not");
  const Condition* test = nullptr;
  if (_lexer.takeWord("like")) {
    test = _arena.make<Condition>(Condition::Kind::Like, nullptr, nullptr, subject, Operand(readPattern()));
  } else if (_lexer.takeWord("isa")) {
    test = _arena.make<Condition>(Condition::Kind::IsA, nullptr, nullptr, subject, Operand(readClass()));
  } else {
    _lexer.fail("a comparison, LIKE, ISA or IS");
  }
  return negated ? negate(test) : test;
}

/// NULL equals nothing; where it is written after '=' it is meant as in IS NULL.
const Condition* QueryParser::readComparison(const Operand& subject, Comparison comparison) {
  const bool equality = comparison == Comparison::Equal || comparison == Comparison::NotEqual;
  if (_lexer.isWord("null")) {
    if (!equality || !std::holds_alternative<PropertyName>(subject)) _lexer.fail("a value");
    _lexer.next();
    return isNull(subject, comparison == Comparison::NotEqual);
  }
  return _arena.make<Condition>(Condition::Kind::Compare, nullptr, nullptr, subject, readOperand(),
                                comparison);
}

const Condition* QueryParser::readIs(const Operand& subject) {
  const bool negated = _lexer.takeWord("not");
  if (!_lexer.takeWord("null")) _lexer.fail(negated ? "NULL" : "NULL or NOT NULL");
  return isNull(subject, negated);
}

const Condition* QueryParser::isNull(const Operand& subject, bool negated) {
  const Condition* test = _arena.make<Condition>(Condition::Kind::IsNull, nullptr, nullptr, subject);
  return negated ? negate(test) : test;
}

const Condition* QueryParser::negate(const Condition* condition) {
  return _arena.make<Condition>(Condition::Kind::Not, condition);
}

std::string_view QueryParser::readPattern() {
  if (_lexer.peek().kind != QueryTokenKind::Text) _lexer.fail("a pattern in quotes");
  return _lexer.next().text;
}

std::string_view QueryParser::readClass() {
  return _lexer.peek().kind == QueryTokenKind::Text ? _lexer.next().text : readName("a class");
}

Operand QueryParser::readOperand() {
  const QueryToken& token = _lexer.peek();
  if (token.kind == QueryTokenKind::Text) return _lexer.next().text;
  if (token.kind == QueryTokenKind::Number) {
    const auto number = numberOf(token.text);
    if (!number) _lexer.fail("a number");
    _lexer.next();
    return *number;
  }
  if (_lexer.takeWord("true")) return true;
  if (_lexer.takeWord("false")) return false;
  return readPropertyName();
}

Operand QueryParser::readPropertyName() {
  PropertyName property{{}, readName("a property or a value"), {}};
  if (_lexer.takeSymbol(".")) property = {property.name, readName("a property"), {}};
  if (_lexer.takeSymbol("[")) {
    const std::string_view text = _lexer.peek().text;
    std::uint32_t index = 0;
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), index);
    if (_lexer.peek().kind != QueryTokenKind::Number || error != std::errc{} ||
        stop != text.data() + text.size()) {
      _lexer.fail("an index");
    }
    _lexer.next();
    if (!_lexer.takeSymbol("]")) _lexer.fail("']'");
    property.index = index;
  }
  return property;
}

}  // namespace

bool isQueryLanguage(std::string_view name) {
  return std::ranges::any_of(kLanguages, [&](std::string_view known) { return sameName(known, name); });
}

Query parseQuery(Arena& arena, std::string_view text) {
  if (text.size() > kLongestQuery) {
    throw QueryError("the query is longer than " + std::to_string(kLongestQuery) + " characters");
  }
  return QueryParser(arena, arena.copy(text)).parse();
}

}  // namespace ZebManager
