// JSON as it is written, without a tree of it in memory.
#pragma once

#include <string>
#include <string_view>

namespace ZebManager {

/// Indented by two, or in one line as long as nothing else is wanted. Text that is no UTF-8 is shown with
/// replacement characters: better than no answer.
class JsonWriter {
 public:
  explicit JsonWriter(std::string& out, bool indented = true) : _out(out), _indented(indented) {}

  /// A list or an object: '[' or '{', then as many values or members, then `close` with the other bracket.
  void open(char bracket);
  void close(char bracket);
  void key(std::string_view name);
  void text(std::string_view value);
  /// A value as it is to stand there: a number, true, false or null.
  void word(std::string_view value);

 private:
  /// What stands before a value or a member.
  void begin();
  void newLine();
  void quote(std::string_view value);

  std::string& _out;
  const bool _indented;
  std::size_t _depth = 0;
  bool _first = true;  ///< nothing stands in the innermost list or object yet
  bool _afterKey = false;
};

}  // namespace ZebManager
