#include "cli/JsonWriter.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace ZebManager {

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
  const auto isPlain = [](char c) { return c >= ' ' && c < '\x7f' && c != '"' && c != '\\'; };
  if (std::ranges::all_of(value, isPlain)) {
    _out.append("\"").append(value).append("\"");
    return;
  }
  if (std::ranges::all_of(value, [&](char c) { return isPlain(c) || c == '"' || c == '\\'; })) {
    _out += '"';
    for (const char c : value) {
      if (c == '"' || c == '\\') _out += '\\';
      _out += c;
    }
    _out += '"';
    return;
  }
  _out += nlohmann::json(value).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

}  // namespace ZebManager
