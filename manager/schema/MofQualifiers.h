// What stands in one pair of brackets.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "schema/ClassRepository.h"
#include "schema/QualifierTypes.h"

namespace ZebManager {

class MofLexer;

/// The qualifiers of one declaration.
class QualifierList {
 public:
  /// Reads `[…]` when it is there. Throws SchemaError.
  static QualifierList read(MofLexer& lexer);

  /// Whether a flag is set; `otherwise` when the qualifier is not there.
  bool flag(std::string_view name, bool otherwise = false) const;
  /// Text of a qualifier, empty when it is not there.
  std::string text(std::string_view name) const;
  bool has(std::string_view name) const { return find(name) != nullptr; }
  /// Throws SchemaError for a qualifier that does not belong before such a declaration.
  void requireScope(const MofLexer& lexer, unsigned scope) const;
  /// Description, units and value map. Throws SchemaError when the map's two lists differ in length.
  void describe(const MofLexer& lexer, ElementDef& element) const;

 private:
  struct Qualifier {
    std::string name;
    int line = 0;
    bool flag = true;
    std::vector<std::string> texts;
    unsigned scopes = 0;
  };

  const Qualifier* find(std::string_view name) const;
  static Qualifier readOne(MofLexer& lexer);

  std::vector<Qualifier> _qualifiers;
};

/// A string literal, or several in a row that make one. Throws SchemaError.
std::string readText(MofLexer& lexer);
/// Takes a punctuation mark. Throws SchemaError that says what it stands after.
void expectMark(MofLexer& lexer, char mark, const std::string& after);
/// Takes a punctuation mark when it is next.
bool takeMark(MofLexer& lexer, char mark);

}  // namespace ZebManager
