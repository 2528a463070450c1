// Splits MOF text into tokens.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace ZebManager {

enum class TokenKind { Identifier, Number, String, Character, Punctuation, Pragma, End };

struct Token {
  TokenKind kind = TokenKind::End;
  std::string_view text;  ///< as written; of strings and characters without the quotes
  int line = 1;

  /// The token as an error names it.
  std::string shown() const;
};

/// Reads one token after the other. Keeps views of the text, which has to outlive it. Throws SchemaError.
class MofLexer {
 public:
  MofLexer(std::string_view text, std::string file);

  const Token& peek() const { return _token; }
  Token next();
  const std::string& file() const { return _file; }
  /// Throws SchemaError with file and line.
  [[noreturn]] void fail(int line, const std::string& what) const;

 private:
  void advance();
  void skipBlanks();
  void skipComment();
  std::size_t quotedLength(char quote) const;

  std::string_view _rest;
  std::string _file;
  int _line = 1;
  Token _token;
};

/// Text of a string token with its escapes resolved; nothing when an escape is unknown.
bool unescape(std::string_view raw, std::string& out);

}  // namespace ZebManager
