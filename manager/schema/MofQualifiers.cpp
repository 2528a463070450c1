#include "schema/MofQualifiers.h"

#include <algorithm>

#include "schema/MofLexer.h"

namespace ZebManager {
namespace {

bool readFlag(MofLexer& lexer, const std::string& name) {
  const Token value = lexer.next();
  if (value.kind == TokenKind::Identifier && sameName(value.text, "true")) return true;
  if (value.kind == TokenKind::Identifier && sameName(value.text, "false")) return false;
  lexer.fail(value.line, "qualifier '" + name + "' takes true or false, not " + value.shown());
}

}  // namespace

void expectMark(MofLexer& lexer, char mark, const std::string& after) {
  const Token token = lexer.next();
  if (token.kind == TokenKind::Punctuation && token.text[0] == mark) return;
  lexer.fail(token.line, std::string("expected '") + mark + "' after " + after + ", found " + token.shown());
}

bool takeMark(MofLexer& lexer, char mark) {
  if (lexer.peek().kind != TokenKind::Punctuation || lexer.peek().text[0] != mark) return false;
  lexer.next();
  return true;
}

std::string readText(MofLexer& lexer) {
  if (lexer.peek().kind != TokenKind::String) {
    lexer.fail(lexer.peek().line, "expected a string, found " + lexer.peek().shown());
  }
  std::string text;
  while (lexer.peek().kind == TokenKind::String) {
    const Token token = lexer.next();
    if (!unescape(token.text, text)) lexer.fail(token.line, "unknown escape in a string");
  }
  return text;
}

QualifierList::Qualifier QualifierList::readOne(MofLexer& lexer) {
  const Token name = lexer.next();
  if (name.kind != TokenKind::Identifier)
    lexer.fail(name.line, "expected a qualifier, found " + name.shown());
  const QualifierType* const known = findQualifierType(name.text);
  if (!known) lexer.fail(name.line, "unknown qualifier " + name.shown());
  Qualifier qualifier{std::string(known->name), name.line, true, {}, known->scopes};
  const std::string after = "qualifier '" + qualifier.name + "'";
  if (known->shape == QualifierShape::Flag) {
    if (takeMark(lexer, '(')) {
      qualifier.flag = readFlag(lexer, qualifier.name);
      expectMark(lexer, ')', after);
    }
  } else if (known->shape == QualifierShape::Text) {
    expectMark(lexer, '(', after);
    qualifier.texts.push_back(readText(lexer));
    expectMark(lexer, ')', after);
  } else {
    expectMark(lexer, '{', after);
    do {
      qualifier.texts.push_back(readText(lexer));
    } while (takeMark(lexer, ','));
    expectMark(lexer, '}', after);
  }
  return qualifier;
}

QualifierList QualifierList::read(MofLexer& lexer) {
  QualifierList list;
  if (!takeMark(lexer, '[')) return list;
  do {
    Qualifier qualifier = readOne(lexer);
    if (list.has(qualifier.name)) lexer.fail(qualifier.line, "qualifier '" + qualifier.name + "' twice");
    list._qualifiers.push_back(std::move(qualifier));
  } while (takeMark(lexer, ','));
  expectMark(lexer, ']', "the qualifiers");
  return list;
}

const QualifierList::Qualifier* QualifierList::find(std::string_view name) const {
  const auto found = std::find_if(_qualifiers.begin(), _qualifiers.end(),
                                  [&](const Qualifier& q) { return q.name == name; });
  return found == _qualifiers.end() ? nullptr : &*found;
}

bool QualifierList::flag(std::string_view name, bool otherwise) const {
  const Qualifier* qualifier = find(name);
  return qualifier ? qualifier->flag : otherwise;
}

std::string QualifierList::text(std::string_view name) const {
  const Qualifier* qualifier = find(name);
  return qualifier ? qualifier->texts.front() : std::string();
}

void QualifierList::requireScope(const MofLexer& lexer, unsigned scope) const {
  for (const Qualifier& qualifier : _qualifiers) {
    if (!(qualifier.scopes & scope))
      lexer.fail(qualifier.line, "qualifier '" + qualifier.name + "' does not belong here");
  }
}

void QualifierList::describe(const MofLexer& lexer, ElementDef& element) const {
  element.description = text("Description");
  element.units = text("Units");
  element.arrayType = text("ArrayType");
  const Qualifier* numbers = find("ValueMap");
  const Qualifier* texts = find("Values");
  if (!numbers && !texts) return;
  const Qualifier& either = numbers ? *numbers : *texts;
  if (!numbers || !texts || numbers->texts.size() != texts->texts.size()) {
    lexer.fail(either.line, "ValueMap and Values of '" + element.name + "' differ in length");
  }
  for (std::size_t i = 0; i < numbers->texts.size(); ++i) {
    element.values.push_back({numbers->texts[i], texts->texts[i]});
  }
}

}  // namespace ZebManager
