// Reads the MOF of classes: the constructs that a schema of classes needs, and an error for everything else.
#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "schema/ClassDeclaration.h"
#include "schema/MofLexer.h"
#include "schema/MofQualifiers.h"

namespace ZebManager {
namespace {

constexpr std::size_t kLargestFile = 16U << 20;
constexpr std::size_t kDeepestInclude = 8;

class MofReader {
 public:
  explicit MofReader(ClassRepository& repository) : _repository(repository) {}

  void readFile(const std::string& path, const std::string& from);
  void readText(std::string_view text, const std::string& name);

 private:
  void readPragma(MofLexer& lexer);
  void readClass(MofLexer& lexer);
  void readFeature(MofLexer& lexer, ClassDeclaration& target);
  void readProperty(MofLexer& lexer, ClassDeclaration& target, const QualifierList& qualifiers,
                    ElementDef element, int line);
  void readMethod(MofLexer& lexer, ClassDeclaration& target, const QualifierList& qualifiers,
                  ElementDef element);
  static ParameterDef readParameter(MofLexer& lexer);

  ClassRepository& _repository;
  std::vector<std::string> _open;  // files being read, the outermost first
};

std::string readIdentifier(MofLexer& lexer, const std::string& what) {
  const Token token = lexer.next();
  if (token.kind == TokenKind::Identifier) return std::string(token.text);
  lexer.fail(token.line, "expected " + what + ", found " + token.shown());
}

/// Type and name, as they begin a property, a method and a parameter.
ElementDef readElement(MofLexer& lexer) {
  ElementDef element;
  const Token type = lexer.next();
  if (type.kind != TokenKind::Identifier) {
    lexer.fail(type.line, "expected a type, found " + type.shown());
  }
  if (lexer.peek().kind == TokenKind::Identifier && sameName(lexer.peek().text, "ref")) {
    lexer.next();
    element.type = CMPI_ref;
    element.referenceClass = type.text;
  } else if (const auto known = typeFromName(type.text)) {
    element.type = *known;
  } else {
    lexer.fail(type.line, "unknown type '" + std::string(type.text) + "'");
  }
  element.name = readIdentifier(lexer, "a name after the type");
  return element;
}

/// `[]` or `[8]` behind a name. The size is not kept: nothing checks it.
void readArrayMark(MofLexer& lexer, ElementDef& element) {
  if (!takeMark(lexer, '[')) return;
  if (element.type == CMPI_ref) lexer.fail(lexer.peek().line, "an array of references is not supported");
  if (lexer.peek().kind == TokenKind::Number) lexer.next();
  expectMark(lexer, ']', "'['");
  element.type = arrayOf(element.type);
}

bool isBoolean(const Token& token) {
  return token.kind == TokenKind::Identifier &&
         (sameName(token.text, "true") || sameName(token.text, "false"));
}

bool valueFits(const Token& token, CMPIType type) {
  if (const auto range = integerRange(type)) {
    const auto literal = parseInteger(token.text);
    return token.kind == TokenKind::Number && literal && fits(*literal, *range);
  }
  switch (type) {
    case CMPI_boolean:
      return isBoolean(token);
    case CMPI_real32:
    case CMPI_real64:
      return token.kind == TokenKind::Number;
    case CMPI_char16:
      return token.kind == TokenKind::Character;
    default:
      return token.kind == TokenKind::String;
  }
}

std::string readScalarDefault(MofLexer& lexer, const ElementDef& element) {
  const Token value = lexer.peek();
  if (!valueFits(value, elementType(element.type))) {
    lexer.fail(value.line, "the default of '" + element.name + "' is no value of type " +
                               typeName(elementType(element.type)));
  }
  if (value.kind == TokenKind::String) return readText(lexer);
  return std::string(lexer.next().text);
}

std::optional<std::vector<std::string>> readDefault(MofLexer& lexer, const ElementDef& element) {
  if (!takeMark(lexer, '=')) return std::nullopt;
  if (lexer.peek().kind == TokenKind::Identifier && sameName(lexer.peek().text, "null")) {
    lexer.next();
    return std::nullopt;
  }
  if (!isArray(element.type)) return std::vector{readScalarDefault(lexer, element)};
  expectMark(lexer, '{', "'='");
  std::vector<std::string> all;
  while (!takeMark(lexer, '}')) {
    if (!all.empty()) expectMark(lexer, ',', "an element");
    all.push_back(readScalarDefault(lexer, element));
  }
  return all;
}

/// Only regular files of a bounded size: an include must not be able to hang the reader.
std::string contentOf(const std::string& path, const std::string& from) {
  const auto refuse = [&](const std::string& why) {
    throw SchemaError((from.empty() ? path : from) + ": cannot read the schema file '" + path + "': " + why);
  };
  std::error_code error;
  const auto status = std::filesystem::status(path, error);
  if (!std::filesystem::exists(status)) refuse(error ? error.message() : "No such file or directory");
  if (!std::filesystem::is_regular_file(status)) refuse("not a file");
  const std::uintmax_t size = std::filesystem::file_size(path, error);
  if (size > kLargestFile) refuse("too large");
  std::ifstream file(path, std::ios::binary);
  if (!file) refuse(std::strerror(errno));
  std::string content(size, '\0');
  file.read(content.data(), static_cast<std::streamsize>(content.size()));
  content.resize(static_cast<std::size_t>(file.gcount()));
  return content;
}

void MofReader::readFile(const std::string& path, const std::string& from) {
  readText(contentOf(path, from), path);
}

void MofReader::readText(std::string_view text, const std::string& name) {
  MofLexer lexer(text, name);
  _open.push_back(name);
  while (lexer.peek().kind != TokenKind::End) {
    if (lexer.peek().kind == TokenKind::Pragma) {
      readPragma(lexer);
    } else {
      readClass(lexer);
    }
  }
  _open.pop_back();
}

void MofReader::readPragma(MofLexer& lexer) {
  const int line = lexer.next().line;
  const std::string what = readIdentifier(lexer, "the name of a pragma");
  if (!sameName(what, "include")) lexer.fail(line, "unknown pragma '" + what + "'");
  expectMark(lexer, '(', "#pragma include");
  const std::string name = ZebManager::readText(lexer);
  expectMark(lexer, ')', "the file to include");
  const std::string path = (std::filesystem::path(lexer.file()).parent_path() / name).string();
  if (std::find(_open.begin(), _open.end(), path) != _open.end() || _open.size() >= kDeepestInclude) {
    lexer.fail(line, "'" + name + "' is included in itself, or too deep");
  }
  readFile(path, lexer.file() + ":" + std::to_string(line));
}

void MofReader::readClass(MofLexer& lexer) {
  const QualifierList qualifiers = QualifierList::read(lexer);
  qualifiers.requireScope(lexer, kOnClass | kOnAssociation | kOnIndication);
  ClassDeclaration target;
  target.file = lexer.file();
  target.line = lexer.peek().line;
  const std::string keyword = readIdentifier(lexer, "'class'");
  if (!sameName(keyword, "class")) lexer.fail(target.line, "expected 'class', found '" + keyword + "'");
  target.name = readIdentifier(lexer, "the name of a class");
  if (takeMark(lexer, ':')) target.superclass = readIdentifier(lexer, "the name of the superclass");
  target.description = qualifiers.text("Description");
  target.version = qualifiers.text("Version");
  target.abstract = qualifiers.flag("Abstract");
  target.association = qualifiers.flag("Association");
  target.indication = qualifiers.flag("Indication");
  expectMark(lexer, '{', "'" + target.name + "'");
  while (!takeMark(lexer, '}')) readFeature(lexer, target);
  expectMark(lexer, ';', "the end of '" + target.name + "'");
  _repository.add(std::move(target));
}

void MofReader::readFeature(MofLexer& lexer, ClassDeclaration& target) {
  const QualifierList qualifiers = QualifierList::read(lexer);
  const int line = lexer.peek().line;
  ElementDef element = readElement(lexer);
  qualifiers.describe(lexer, element);
  if (takeMark(lexer, '(')) {
    readMethod(lexer, target, qualifiers, std::move(element));
  } else {
    readProperty(lexer, target, qualifiers, std::move(element), line);
  }
}

void MofReader::readProperty(MofLexer& lexer, ClassDeclaration& target, const QualifierList& qualifiers,
                             ElementDef element, int line) {
  qualifiers.requireScope(lexer, element.type == CMPI_ref ? kOnReference : kOnProperty);
  readArrayMark(lexer, element);
  PropertyDeclaration declaration;
  static_cast<ElementDef&>(declaration.property) = std::move(element);
  declaration.property.key = qualifiers.flag("Key");
  declaration.property.required = qualifiers.flag("Required");
  declaration.property.writable = qualifiers.flag("Write");
  declaration.property.defaultValues = readDefault(lexer, declaration.property);
  declaration.overrides = qualifiers.has("Override");
  declaration.property.overrides = declaration.overrides;
  declaration.line = line;
  if (declaration.overrides && !sameName(qualifiers.text("Override"), declaration.property.name)) {
    lexer.fail(line, "'" + declaration.property.name + "' overrides a property of another name");
  }
  expectMark(lexer, ';', "property '" + declaration.property.name + "'");
  target.properties.push_back(std::move(declaration));
}

ParameterDef MofReader::readParameter(MofLexer& lexer) {
  const QualifierList qualifiers = QualifierList::read(lexer);
  qualifiers.requireScope(lexer, kOnParameter);
  ParameterDef parameter;
  static_cast<ElementDef&>(parameter) = readElement(lexer);
  qualifiers.describe(lexer, parameter);
  readArrayMark(lexer, parameter);
  parameter.in = qualifiers.flag("In", true);
  parameter.out = qualifiers.flag("Out");
  parameter.required = qualifiers.flag("Required");
  return parameter;
}

void MofReader::readMethod(MofLexer& lexer, ClassDeclaration& target, const QualifierList& qualifiers,
                           ElementDef element) {
  qualifiers.requireScope(lexer, kOnMethod);
  MethodDef method;
  static_cast<ElementDef&>(method) = std::move(element);
  method.isStatic = qualifiers.flag("Static");
  method.overrides = qualifiers.has("Override");
  const std::string after = "the parameters of '" + method.name + "'";
  if (!takeMark(lexer, ')')) {
    do {
      method.parameters.push_back(readParameter(lexer));
    } while (takeMark(lexer, ','));
    expectMark(lexer, ')', after);
  }
  expectMark(lexer, ';', after);
  target.methods.push_back(std::move(method));
}

}  // namespace

ClassRepository ClassRepository::fromFile(const std::string& path) {
  ClassRepository repository;
  MofReader(repository).readFile(path, {});
  repository.checkReferences();
  return repository;
}

ClassRepository ClassRepository::fromText(std::string_view text, const std::string& name) {
  ClassRepository repository;
  MofReader(repository).readText(text, name);
  repository.checkReferences();
  return repository;
}

}  // namespace ZebManager
