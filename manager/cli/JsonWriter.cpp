#include "cli/JsonWriter.h"

#include <cstdint>
#include <cstring>
#include <nlohmann/json.hpp>

namespace ZebManager {

namespace {

constexpr bool isPlain(char c) {
  return c >= ' ' && c < '\x7f' && c != '"' && c != '\\';
}

/// The same of eight characters at once.
constexpr bool arePlain(std::uint64_t word) {
  constexpr std::uint64_t kEach = 0x0101010101010101;
  const std::uint64_t controls = (word - kEach * ' ') & ~word;
  const std::uint64_t noQuote = word ^ kEach * '"';
  const std::uint64_t noBackslash = word ^ kEach * '\\';
  const std::uint64_t marks = ((noQuote - kEach) & ~noQuote) | ((noBackslash - kEach) & ~noBackslash);
  const std::uint64_t beyond = word | (word + kEach);
  return ((controls | marks | beyond) & kEach * 0x80) == 0;
}
static_assert(arePlain(0x7e5d5b232120207a) && !arePlain(0x7e5d5b232122207a) && !arePlain(0x7e5c5b2321202020));
static_assert(!arePlain(0x7f5d5b2321202020) && !arePlain(0x7e5d5b1f21202020) &&
              !arePlain(0x7e5d80232120207a));

/// How much of a text stands in JSON as it is.
std::size_t plainLength(std::string_view text) {
  std::size_t length = 0;
  for (std::uint64_t word = 0; length + sizeof word <= text.size(); length += sizeof word) {
    std::memcpy(&word, text.data() + length, sizeof word);
    if (!arePlain(word)) break;
  }
  const std::string_view rest = text.substr(length);
  if (rest.size() < sizeof(std::uint64_t)) {
    std::uint64_t last = 0x2020202020202020;
    std::memcpy(&last, rest.data(), rest.size());
    if (arePlain(last)) return text.size();
  }
  while (length < text.size() && isPlain(text[length])) ++length;
  return length;
}

}  // namespace

void JsonWriter::newLine() {
  if (_indented) _out.append("\n").append(_depth * 2, ' ');
}

void JsonWriter::begin() {
  if (std::exchange(_afterKey, false) || _depth == 0) return;
  if (!std::exchange(_first, false)) _out += ',';
  newLine();
}

void JsonWriter::open(char bracket) {
  begin();
  _out += bracket;
  ++_depth;
  _first = true;
}

void JsonWriter::close(char bracket) {
  --_depth;
  if (!std::exchange(_first, false)) newLine();
  _out += bracket;
}

void JsonWriter::key(std::string_view name) {
  begin();
  quote(name);
  _out += _indented ? ": " : ":";
  _afterKey = true;
}

void JsonWriter::text(std::string_view value) {
  begin();
  quote(value);
}

void JsonWriter::word(std::string_view value) {
  begin();
  _out += value;
}

void JsonWriter::quote(std::string_view value) {
  const std::size_t begin = _out.size();
  _out += '"';
  for (std::string_view rest = value;;) {
    const std::size_t plain = plainLength(rest);
    _out.append(rest.substr(0, plain));
    rest.remove_prefix(plain);
    if (rest.empty()) break;
    if (rest.front() != '"' && rest.front() != '\\') {
      _out.resize(begin);
      _out += nlohmann::json(value).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
      return;
    }
    _out.append("\\").append(rest.substr(0, 1));
    rest.remove_prefix(1);
  }
  _out += '"';
}

}  // namespace ZebManager
