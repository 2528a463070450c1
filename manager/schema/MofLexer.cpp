#include "schema/MofLexer.h"

#include <charconv>

#include "schema/ClassRepository.h"
#include "schema/Utf8.h"

namespace ZebManager {
namespace {

constexpr std::string_view kPragma = "#pragma";

bool isLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}
bool isDigit(char c) {
  return c >= '0' && c <= '9';
}
bool isSign(char c) {
  return c == '+' || c == '-';
}

template <class Predicate>
std::size_t lengthOf(std::string_view text, std::size_t start, Predicate wanted) {
  std::size_t length = start;
  while (length < text.size() && wanted(text[length])) ++length;
  return length;
}

std::size_t numberLength(std::string_view text) {
  return lengthOf(text, 1, [](char c) { return isDigit(c) || isLetter(c) || c == '.' || isSign(c); });
}

std::string shown(char c) {
  if (c > ' ' && c < '\x7f') return std::string("'") + c + "'";
  return "byte " + std::to_string(static_cast<unsigned char>(c));
}

}  // namespace

std::string Token::shown() const {
  switch (kind) {
    case TokenKind::End:
      return "the end of the file";
    case TokenKind::String:
      return "a string";
    default:
      return "'" + std::string(text) + "'";
  }
}

MofLexer::MofLexer(std::string_view text, std::string file) : _rest(text), _file(std::move(file)) {
  advance();
}

Token MofLexer::next() {
  const Token current = _token;
  advance();
  return current;
}

void MofLexer::fail(int line, const std::string& what) const {
  throw SchemaError(_file + ":" + std::to_string(line) + ": " + what);
}

void MofLexer::skipComment() {
  if (_rest[1] == '/') {
    _rest.remove_prefix(std::min(_rest.find('\n'), _rest.size()));
    return;
  }
  const int start = _line;
  const std::size_t end = _rest.find("*/", 2);
  if (end == std::string_view::npos) fail(start, "a comment that begins here has no end");
  for (const char c : _rest.substr(0, end)) _line += c == '\n';
  _rest.remove_prefix(end + 2);
}

void MofLexer::skipBlanks() {
  while (!_rest.empty()) {
    const char c = _rest.front();
    if (c == ' ' || c == '\t' || c == '\r' || c == '\n') {
      _line += c == '\n';
      _rest.remove_prefix(1);
    } else if (_rest.starts_with("//") || _rest.starts_with("/*")) {
      skipComment();
    } else {
      return;
    }
  }
}

std::size_t MofLexer::quotedLength(char quote) const {
  for (std::size_t i = 1; i < _rest.size() && _rest[i] != '\n'; ++i) {
    if (_rest[i] == quote) return i + 1;
    if (_rest[i] == '\\') ++i;
  }
  fail(_line, quote == '"' ? "a string has no closing quote" : "a character has no closing quote");
}

void MofLexer::advance() {
  skipBlanks();
  _token = {TokenKind::End, {}, _line};
  if (_rest.empty()) return;
  const char c = _rest.front();
  std::size_t length = 1;
  if (isLetter(c)) {
    _token.kind = TokenKind::Identifier;
    length = lengthOf(_rest, 1, [](char d) { return isLetter(d) || isDigit(d); });
  } else if (isDigit(c) || (isSign(c) && _rest.size() > 1 && isDigit(_rest[1]))) {
    _token.kind = TokenKind::Number;
    length = numberLength(_rest);
  } else if (c == '"' || c == '\'') {
    _token.kind = c == '"' ? TokenKind::String : TokenKind::Character;
    length = quotedLength(c);
    _token.text = _rest.substr(1, length - 2);
  } else if (_rest.starts_with(kPragma)) {
    _token.kind = TokenKind::Pragma;
    length = kPragma.size();
  } else if (std::string_view("[](){};:,=").find(c) != std::string_view::npos) {
    _token.kind = TokenKind::Punctuation;
  } else {
    fail(_line, "unexpected " + shown(c));
  }
  if (_token.text.empty() && _token.kind != TokenKind::String) _token.text = _rest.substr(0, length);
  _rest.remove_prefix(length);
}

bool unescape(std::string_view raw, std::string& out) {
  constexpr std::string_view kLetters = "btnfr\"'\\";
  constexpr std::string_view kMeanings = "\b\t\n\f\r\"'\\";
  for (std::size_t i = 0; i < raw.size(); ++i) {
    if (raw[i] != '\\') {
      out += raw[i];
      continue;
    }
    if (++i == raw.size()) return false;
    if (raw[i] == 'x' || raw[i] == 'X') {
      unsigned code = 0;
      const char* const first = raw.data() + i + 1;
      const auto [stop, error] =
          std::from_chars(first, first + std::min<std::size_t>(4, raw.size() - i - 1), code, 16);
      if (error != std::errc{} || code == 0) return false;
      appendUtf8(out, code);
      i += static_cast<std::size_t>(stop - first);
      continue;
    }
    const std::size_t which = kLetters.find(raw[i]);
    if (which == std::string_view::npos) return false;
    out += kMeanings[which];
  }
  return true;
}

}  // namespace ZebManager
