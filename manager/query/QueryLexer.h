// Splits the text of a query into tokens.
#pragma once

#include <string>
#include <string_view>

#include "values/Arena.h"

namespace ZebManager {

enum class QueryTokenKind { Word, Number, Text, Symbol, End };

struct QueryToken {
  QueryTokenKind kind = QueryTokenKind::End;
  std::string_view text;     ///< as written; of a Text what stands between the quotes, escapes resolved
  std::size_t position = 0;  ///< of its first character, from 1
};

/// Reads one token after the other. The text has to outlive the lexer and what it gives out; texts with
/// escapes go to the arena. Throws QueryError.
class QueryLexer {
 public:
  QueryLexer(Arena& arena, std::string_view text);

  const QueryToken& peek() const { return _token; }
  QueryToken next();
  bool isSymbol(std::string_view symbol) const;
  bool isWord(std::string_view word) const;
  /// Takes the token when it is that.
  bool takeSymbol(std::string_view symbol);
  bool takeWord(std::string_view word);
  /// Throws QueryError that says what was expected instead of the next token.
  [[noreturn]] void fail(const std::string& expected) const;

 private:
  void advance();
  void readText(char quote);
  void readNumber();
  std::size_t offset() const { return _text.size() - _rest.size(); }

  Arena& _arena;
  std::string_view _text;
  std::string_view _rest;
  QueryToken _token;
};

}  // namespace ZebManager
