// The classes of a schema, read from MOF once and constant from then on.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "schema/Caseless.h"
#include "schema/CimType.h"

namespace ZebManager {

struct ClassDef;
struct ClassDeclaration;

/// A schema that cannot be used. The text begins with "file:line: ".
class SchemaError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// One number, or range of numbers, of a value map and what it stands for.
struct MappedValue {
  std::string number;
  std::string text;
};

/// What a class says of a property, a parameter or a method's return value.
struct ElementDef {
  std::string name;
  CMPIType type = CMPI_null;   ///< with `CMPI_ARRAY` for arrays, `CMPI_ref` for references
  std::string referenceClass;  ///< of references only
  std::string description;
  std::string units;
  std::string arrayType;
  std::vector<MappedValue> values;

  /// Text of a number in the value map; nothing when the map has none for it.
  std::optional<std::string_view> valueText(std::int64_t number) const;
};

struct PropertyDef : ElementDef {
  bool key = false;
  bool required = false;
  bool writable = false;
  bool overrides = false;  ///< a property of the superclass
  /// One text without quotes, for arrays one for each element; nothing when there is no default.
  std::optional<std::vector<std::string>> defaultValues;
  const ClassDef* origin = nullptr;  ///< class that declared it first
};

struct ParameterDef : ElementDef {
  bool in = true;
  bool out = false;
  bool required = false;
};

struct MethodDef : ElementDef {
  std::vector<ParameterDef> parameters;
  bool isStatic = false;
  bool overrides = false;  ///< a method of the superclass

  const ParameterDef* parameter(std::string_view parameterName) const;
};

struct ClassDef {
  std::string name;
  const ClassDef* superclass = nullptr;
  std::string description;
  std::string version;
  bool abstract = false;
  bool association = false;
  bool indication = false;
  std::vector<PropertyDef>
      properties;                  ///< inherited ones first, an override in the place of what it overrides
  std::vector<MethodDef> methods;  ///< inherited ones first
  std::vector<const ClassDef*> subclasses;
  std::string file;
  int line = 0;

  /// Null when the class has no such property.
  const PropertyDef* property(std::string_view propertyName) const;
  const MethodDef* method(std::string_view methodName) const;
  bool isA(const ClassDef& ancestor) const;
  std::vector<const PropertyDef*> keys() const;

  /// Position of each property by name. Filled by the repository.
  std::unordered_map<std::string_view, std::uint16_t, NameHash, NameEqual> propertyIndex;
};

class ClassRepository {
 public:
  /// Reads a MOF file and what it includes. Throws SchemaError.
  static ClassRepository fromFile(const std::string& path);
  /// Reads MOF text; `name` stands for the file in errors, and includes are looked up beside it.
  static ClassRepository fromText(std::string_view text, const std::string& name);

  /// Null when the schema has no such class.
  const ClassDef* find(std::string_view className) const;
  /// False when either class is unknown.
  bool isA(std::string_view className, std::string_view ancestor) const;
  /// The class and everything that descends from it, in the order of declaration, without abstract classes
  /// and indications: those that can have instances.
  std::vector<const ClassDef*> instantiable(const ClassDef& root) const;
  const std::vector<std::unique_ptr<ClassDef>>& classes() const { return _classes; }

  /// Takes a class in: resolves its superclass and what it inherits. Throws SchemaError when it contradicts
  /// what is there.
  void add(ClassDeclaration declaration);
  /// Leaves out classes that no instance can have to do with: that have none themselves, are above no class
  /// that has, and are what no reference of such a class leads to.
  void leaveOutUnused();
  /// Checks what can only be checked when every class is known. Throws SchemaError.
  void checkReferences() const;

 private:
  std::vector<std::unique_ptr<ClassDef>> _classes;
  std::unordered_map<std::string_view, ClassDef*, NameHash, NameEqual> _index;
};

}  // namespace ZebManager
