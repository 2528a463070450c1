#include "query/QueryLexer.h"

#include <algorithm>
#include <array>

#include "query/Condition.h"

namespace ZebManager {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::array<std::string_view, 4> kLongSymbols = {"<>", "!=", "<=", ">="};

bool startsWord(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' ||
         static_cast<unsigned char>(c) >= 0x80;
}

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

std::size_t wordLength(std::string_view text) {
  const auto end =
      std::find_if(text.begin(), text.end(), [](char c) { return !startsWord(c) && !isDigit(c); });
  return static_cast<std::size_t>(end - text.begin());
}

}  // namespace

QueryLexer::QueryLexer(Arena& arena, std::string_view text) : _arena(arena), _text(text), _rest(text) {
  advance();
}

QueryToken QueryLexer::next() {
  const QueryToken token = _token;
  advance();
  return token;
}

bool QueryLexer::isSymbol(std::string_view symbol) const {
  return _token.kind == QueryTokenKind::Symbol && _token.text == symbol;
}

bool QueryLexer::isWord(std::string_view word) const {
  return _token.kind == QueryTokenKind::Word && sameName(_token.text, word);
}

bool QueryLexer::takeSymbol(std::string_view symbol) {
  const bool there = isSymbol(symbol);
  if (there) advance();
  return there;
}

bool QueryLexer::takeWord(std::string_view word) {
  const bool there = isWord(word);
  if (there) advance();
  return there;
}

void QueryLexer::fail(const std::string& expected) const {
  const bool over = _token.kind == QueryTokenKind::End;
  const std::string found = over ? "the end" : "'" + std::string(_token.text.substr(0, 60)) + "'";
  throw QueryError("query, character " + std::to_string(_token.position) + ": expected " + expected +
                   ", not " + found);
}

void QueryLexer::advance() {
  _rest.remove_prefix(std::min(_rest.find_first_not_of(kBlanks), _rest.size()));
  _token = {QueryTokenKind::End, {}, offset() + 1};
  if (_rest.empty()) return;
  const char first = _rest.front();
  if (first == '\'' || first == '"') return readText(first);
  const bool sign =
      (first == '-' || first == '+') && _rest.size() > 1 && (isDigit(_rest[1]) || _rest[1] == '.');
  if (isDigit(first) || sign) return readNumber();
  std::size_t length = 1;
  if (startsWord(first)) {
    _token.kind = QueryTokenKind::Word;
    length = wordLength(_rest);
  } else {
    _token.kind = QueryTokenKind::Symbol;
    if (std::ranges::find(kLongSymbols, _rest.substr(0, 2)) != kLongSymbols.end()) length = 2;
  }
  _token.text = _rest.substr(0, length);
  _rest.remove_prefix(length);
}

// Languages differ in how a quote stands within quotes: both the backslash and the doubled quote are read.
void QueryLexer::readText(char quote) {
  std::string text;
  for (std::size_t i = 1; i < _rest.size(); ++i) {
    const bool doubled = _rest[i] == quote && i + 1 < _rest.size() && _rest[i + 1] == quote;
    const bool escaped = _rest[i] == '\\' && i + 1 < _rest.size() &&
                         (_rest[i + 1] == '\\' || _rest[i + 1] == '\'' || _rest[i + 1] == '"');
    if (doubled || escaped) {
      text += _rest[++i];
    } else if (_rest[i] == quote) {
      _token.kind = QueryTokenKind::Text;
      _token.text = _arena.copy(text);
      _rest.remove_prefix(i + 1);
      return;
    } else {
      text += _rest[i];
    }
  }
  throw QueryError("query, character " + std::to_string(_token.position) + ": the text has no closing quote");
}

/// Sign, digits, point, exponent; or 0x and what may be hexadecimal. What it means is for the parser to say.
void QueryLexer::readNumber() {
  std::size_t length = 1;
  while (length < _rest.size()) {
    const char c = _rest[length];
    const char before = _rest[length - 1];
    const bool exponentSign = (c == '-' || c == '+') && (before == 'e' || before == 'E');
    if (!isDigit(c) && !startsWord(c) && c != '.' && !exponentSign) break;
    ++length;
  }
  _token.kind = QueryTokenKind::Number;
  _token.text = _rest.substr(0, length);
  _rest.remove_prefix(length);
}

}  // namespace ZebManager
