#include "schema/ClassRepository.h"

#include <algorithm>
#include <functional>
#include <set>

#include "schema/ClassDeclaration.h"

namespace ZebManager {
namespace {

constexpr std::size_t kMostProperties = 1000;

[[noreturn]] void fail(const std::string& file, int line, const std::string& what) {
  throw SchemaError(file + ":" + std::to_string(line) + ": " + what);
}

/// Whether a value map's entry covers a number: "5", "0x8000..", "11..32767", and ".." for all the rest.
bool covers(std::string_view entry, std::int64_t number) {
  const auto dots = entry.find("..");
  const auto bound = [](std::string_view text) { return parseInteger(text).value_or(IntegerLiteral{}); };
  const auto valueOf = [](const IntegerLiteral& literal) {
    return static_cast<std::int64_t>(literal.negative ? ~literal.magnitude + 1 : literal.magnitude);
  };
  if (dots == std::string_view::npos) return valueOf(bound(entry)) == number && parseInteger(entry);
  const std::string_view low = entry.substr(0, dots);
  const std::string_view high = entry.substr(dots + 2);
  if (low.empty() && high.empty()) return true;
  return (low.empty() || valueOf(bound(low)) <= number) && (high.empty() || number <= valueOf(bound(high)));
}

template <class Elements>
auto* findNamed(Elements& elements, std::string_view name) {
  const auto found =
      std::find_if(elements.begin(), elements.end(), [&](auto& e) { return sameName(e.name, name); });
  return found == elements.end() ? nullptr : &*found;
}

/// An override keeps the place, the key and what else it does not say anew.
void overrideProperty(PropertyDef& inherited, PropertyDeclaration declared, const ClassDeclaration& owner) {
  PropertyDef& property = declared.property;
  if (property.type != inherited.type) {
    fail(owner.file, declared.line,
         "'" + property.name + "' is " + typeName(property.type) + ", but it overrides a property of type " +
             typeName(inherited.type));
  }
  property.key |= inherited.key;
  property.required |= inherited.required;
  property.origin = inherited.origin;
  if (property.description.empty()) property.description = inherited.description;
  if (property.units.empty()) property.units = inherited.units;
  if (property.arrayType.empty()) property.arrayType = inherited.arrayType;
  if (property.values.empty()) property.values = inherited.values;
  if (!property.defaultValues) property.defaultValues = inherited.defaultValues;
  inherited = std::move(property);
}

void takeProperty(ClassDef& target, PropertyDeclaration declared, const ClassDeclaration& owner) {
  PropertyDef* inherited = findNamed(target.properties, declared.property.name);
  const std::string quoted = "'" + declared.property.name + "'";
  if (inherited && inherited->origin == &target) {
    fail(owner.file, declared.line, "property " + quoted + " is declared twice");
  }
  if (inherited && !declared.overrides) {
    fail(owner.file, declared.line, "property " + quoted + " of the superclass lacks the qualifier Override");
  }
  if (!inherited && declared.overrides) {
    fail(owner.file, declared.line, "property " + quoted + " overrides nothing");
  }
  if (inherited) return overrideProperty(*inherited, std::move(declared), owner);
  if (target.properties.size() >= kMostProperties) fail(owner.file, declared.line, "too many properties");
  declared.property.origin = &target;
  target.properties.push_back(std::move(declared.property));
}

void checkShape(const ClassDef& def) {
  const auto references = std::count_if(def.properties.begin(), def.properties.end(),
                                        [](const PropertyDef& p) { return p.type == CMPI_ref; });
  if (def.association && references < 2) {
    fail(def.file, def.line, "association '" + def.name + "' needs two references");
  }
  if (!def.association && references > 0) {
    fail(def.file, def.line, "'" + def.name + "' has a reference but lacks the qualifier Association");
  }
  if (!def.abstract && !def.indication && def.keys().empty()) {
    fail(def.file, def.line, "'" + def.name + "' has no key and is not abstract");
  }
}

void takeMethod(ClassDef& target, MethodDef method) {
  if (MethodDef* inherited = findNamed(target.methods, method.name)) {
    *inherited = std::move(method);
  } else {
    target.methods.push_back(std::move(method));
  }
}

}  // namespace

std::optional<std::string_view> ElementDef::valueText(std::int64_t number) const {
  for (const MappedValue& entry : values) {
    if (entry.number != ".." && covers(entry.number, number)) return entry.text;
  }
  const MappedValue* rest = nullptr;
  for (const MappedValue& entry : values) {
    if (entry.number == "..") rest = &entry;
  }
  return rest ? std::optional<std::string_view>(rest->text) : std::nullopt;
}

const ParameterDef* MethodDef::parameter(std::string_view parameterName) const {
  return findNamed(parameters, parameterName);
}

const PropertyDef* ClassDef::property(std::string_view propertyName) const {
  const auto found = propertyIndex.find(propertyName);
  return found == propertyIndex.end() ? nullptr : &properties[found->second];
}

const MethodDef* ClassDef::method(std::string_view methodName) const {
  return findNamed(methods, methodName);
}

bool ClassDef::isA(const ClassDef& ancestor) const {
  for (const ClassDef* def = this; def; def = def->superclass) {
    if (def == &ancestor) return true;
  }
  return false;
}

std::vector<const PropertyDef*> ClassDef::keys() const {
  std::vector<const PropertyDef*> found;
  for (const PropertyDef& property : properties) {
    if (property.key) found.push_back(&property);
  }
  return found;
}

const ClassDef* ClassRepository::find(std::string_view className) const {
  const auto found = _index.find(className);
  return found == _index.end() ? nullptr : found->second;
}

bool ClassRepository::isA(std::string_view className, std::string_view ancestor) const {
  const ClassDef* def = find(className);
  const ClassDef* other = find(ancestor);
  return def && other && def->isA(*other);
}

std::vector<const ClassDef*> ClassRepository::instantiable(const ClassDef& root) const {
  std::vector<const ClassDef*> found;
  for (const auto& def : _classes) {
    if (!def->abstract && !def->indication && def->isA(root)) found.push_back(def.get());
  }
  return found;
}

void ClassRepository::add(ClassDeclaration declaration) {
  if (find(declaration.name)) {
    fail(declaration.file, declaration.line, "class '" + declaration.name + "' is declared twice");
  }
  const auto super = _index.find(declaration.superclass);
  if (!declaration.superclass.empty() && super == _index.end()) {
    fail(declaration.file, declaration.line,
         "superclass '" + declaration.superclass + "' of '" + declaration.name +
             "' is not declared before it");
  }
  auto def = std::make_unique<ClassDef>();
  def->name = declaration.name;
  def->description = declaration.description;
  def->version = declaration.version;
  def->abstract = declaration.abstract;
  def->association = declaration.association;
  def->indication = declaration.indication;
  def->file = declaration.file;
  def->line = declaration.line;
  ClassDef* const superclass = super == _index.end() ? nullptr : super->second;
  if (superclass) {
    def->superclass = superclass;
    def->association |= superclass->association;
    def->indication |= superclass->indication;
    def->properties = superclass->properties;
    def->methods = superclass->methods;
  }
  const bool keysInherited = !def->keys().empty();
  for (PropertyDeclaration& declared : declaration.properties) {
    const PropertyDef* inherited = findNamed(def->properties, declared.property.name);
    if (declared.property.key && keysInherited && !(inherited && inherited->key)) {
      fail(declaration.file, declared.line,
           "key '" + declared.property.name + "' cannot be added to the keys of the superclass");
    }
    takeProperty(*def, std::move(declared), declaration);
  }
  for (MethodDef& method : declaration.methods) takeMethod(*def, std::move(method));
  checkShape(*def);
  for (std::size_t i = 0; i < def->properties.size(); ++i) {
    def->propertyIndex.emplace(def->properties[i].name, static_cast<std::uint16_t>(i));
  }
  if (superclass) superclass->subclasses.push_back(def.get());
  _index.emplace(def->name, def.get());
  _classes.push_back(std::move(def));
}

void ClassRepository::leaveOutUnused() {
  std::set<const ClassDef*> used;
  const std::function<void(const ClassDef*)> use = [&](const ClassDef* def) {
    for (; def && used.insert(def).second; def = def->superclass) {
      for (const PropertyDef& property : def->properties) {
        if (property.type == CMPI_ref) use(find(property.referenceClass));
      }
    }
  };
  for (const auto& def : _classes) {
    if (!def->abstract) use(def.get());
  }
  const auto unused = [&](const ClassDef* def) { return !used.contains(def); };
  for (const auto& def : _classes) std::erase_if(def->subclasses, unused);
  std::erase_if(_index, [&](const auto& entry) { return unused(entry.second); });
  std::erase_if(_classes, [&](const auto& def) { return unused(def.get()); });
}

void ClassRepository::checkReferences() const {
  for (const auto& def : _classes) {
    for (const PropertyDef& property : def->properties) {
      if (property.type == CMPI_ref && !find(property.referenceClass)) {
        fail(def->file, def->line,
             "'" + def->name + "." + property.name + "' refers to the class '" + property.referenceClass +
                 "', which is not declared");
      }
    }
  }
}

}  // namespace ZebManager
