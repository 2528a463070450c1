#include "cimxml/ValueReader.h"

#include "cimxml/Document.h"
#include "values/ObjectPathText.h"
#include "values/Values.h"

namespace ZebManager {
namespace {

[[noreturn]] void invalid(const std::string& why) {
  throw CimError(CMPI_RC_ERR_INVALID_PARAMETER, why);
}

std::string inQuotes(std::string_view name) {
  return "'" + std::string(name) + "'";
}

/// The character that a text of UTF-8 consists of.
CMPIChar16 characterOf(const std::string& content, const std::string& what) {
  constexpr unsigned kBits[] = {0x7f, 0x1f, 0x0f};
  if (!content.empty() && content.size() <= std::size(kBits)) {
    unsigned code = static_cast<unsigned char>(content[0]) & kBits[content.size() - 1];
    for (std::size_t i = 1; i < content.size(); ++i) {
      code = (code << 6) | (static_cast<unsigned char>(content[i]) & 0x3f);
    }
    if (utf8Of(static_cast<CMPIChar16>(code)) == content) return static_cast<CMPIChar16>(code);
  }
  invalid(what + ": expected one character");
}

}  // namespace

const ClassDef& ValueReader::classNamed(std::string_view name) const {
  if (const ClassDef* const found = _repository.find(name)) return *found;
  throw CimError(CMPI_RC_ERR_INVALID_CLASS, "unknown class " + inQuotes(name));
}

void ValueReader::readKey(ObjectPath& path, const ClassDef& classDef, std::string_view name,
                          pugi::xml_node value) const {
  const PropertyDef* const key = classDef.property(name);
  if (!key || !key->key) invalid(inQuotes(name) + " is no key of " + classDef.name);
  const Holder what{"key ", key->name};
  if (path.body().keys.find(key->name)) invalid(what.text() + " is given twice");
  CMPIData data;
  if (isNamed(value, "VALUE.REFERENCE")) {
    if (key->type != CMPI_ref) invalid(what.text() + " is no reference");
    data = dataOf(this->path(value));
  } else if (isNamed(value, "KEYVALUE")) {
    if (key->type == CMPI_ref) invalid(what.text() + " is a reference");
    data = text(contentOf(value), key->type, what);
  } else {
    invalid(what.text() + " has no value");
  }
  data.state = CMPI_keyValue;
  path.body().keys.append(_arena, key->name).data = data;
}

ObjectPath& ValueReader::newPath(std::string_view nameSpace, const ClassDef& classDef) const {
  ObjectPath& path = *makePath(_arena, nameSpace, classDef.name);
  path.body().host = _host;
  return path;
}

ObjectPath* ValueReader::path(pugi::xml_node element) const {
  std::string nameSpace = _nameSpace;
  for (; element && !isNamed(element, "INSTANCENAME"); element = firstElement(element)) {
    if (isNamed(element, "LOCALNAMESPACEPATH") || isNamed(element, "NAMESPACEPATH")) {
      element = nextElement(element);
      if (!isNamed(element, "INSTANCENAME")) break;
      nameSpace = nameSpaceOf(element.parent());
      break;
    }
  }
  if (!isNamed(element, "INSTANCENAME")) invalid("the name of an instance is expected");
  const ClassDef& classDef = classNamed(element.attribute("CLASSNAME").value());
  ObjectPath& path = newPath(nameSpace, classDef);
  for (pugi::xml_node key = firstElement(element); key; key = nextElement(key)) {
    if (isNamed(key, "KEYBINDING")) {
      readKey(path, classDef, key.attribute("NAME").value(), firstElement(key));
    } else if (classDef.keys().size() == 1) {
      readKey(path, classDef, classDef.keys().front()->name, key);
    } else {
      invalid("the keys of " + classDef.name + " have to be named");
    }
  }
  return &path;
}

CMPIData ValueReader::text(const std::string& content, CMPIType type, const Holder& what) const {
  if (type == CMPI_char16) {
    CMPIValue value{};
    value.char16 = characterOf(content, what.text());
    return dataOf(type, value);
  }
  if (type == CMPI_string) return dataOf(makeString(_arena, content));
  try {
    return parseScalar(_arena, type, content, what.text());
  } catch (const ManagerError& error) {
    invalid(error.what());
  }
}

CMPIData ValueReader::scalar(pugi::xml_node element, CMPIType type, const Holder& what) const {
  if (isNamed(element, "VALUE.NULL")) return nullOf(type);
  if (type == CMPI_ref) {
    if (!isNamed(element, "VALUE.REFERENCE")) invalid(what.text() + ": a reference is expected");
    return dataOf(path(element));
  }
  if (!isNamed(element, "VALUE")) invalid(what.text() + ": a single value is expected");
  return text(contentOf(element), type, what);
}

CMPIData ValueReader::array(pugi::xml_node element, CMPIType type, const Holder& what) const {
  if (!isNamed(element, "VALUE.ARRAY") && !isNamed(element, "VALUE.REFARRAY")) {
    invalid(what.text() + ": an array is expected");
  }
  CMPICount count = 0;
  for (pugi::xml_node item = firstElement(element); item; item = nextElement(item)) ++count;
  Array& list = *makeArray(_arena, count, type);
  CMPIData* next = list.body().elements;
  for (pugi::xml_node item = firstElement(element); item; item = nextElement(item)) {
    *next++ = scalar(item, type, what);
  }
  return dataOf(&list);
}

CMPIData ValueReader::value(pugi::xml_node holder, CMPIType type, const Holder& what) const {
  pugi::xml_node element = firstElement(holder);
  while (isNamed(element, "QUALIFIER")) element = nextElement(element);
  if (!element) return nullOf(type);
  return isArray(type) ? array(element, elementType(type), what) : scalar(element, type, what);
}

void ValueReader::setProperty(const Instance& instance, pugi::xml_node element) const {
  const ClassDef& classDef = *instance.body().classDef;
  const std::string_view name = element.attribute("NAME").value();
  const PropertyDef* const property = classDef.property(name);
  if (!property) {
    throw CimError(CMPI_RC_ERR_NO_SUCH_PROPERTY, classDef.name + " has no property " + inQuotes(name));
  }
  const CMPIData data = value(element, property->type, {"property ", property->name});
  instance.ft->setProperty(&instance, property->name.c_str(), isNull(data) ? nullptr : &data.value,
                           data.type);
}

Instance* ValueReader::instance(pugi::xml_node element, const ObjectPath* path) const {
  if (!isNamed(element, "INSTANCE")) invalid("an instance is expected");
  const ClassDef& classDef = classNamed(element.attribute("CLASSNAME").value());
  if (path && !sameName(path->body().className, classDef.name)) {
    invalid("the path is of another class than the instance");
  }
  ObjectPath& own = newPath(_nameSpace, classDef);
  const Instance& made = *makeInstance(_arena, path ? *path : own, classDef);
  for (pugi::xml_node child = firstElement(element); child; child = nextElement(child)) {
    if (!isNamed(child, "QUALIFIER")) setProperty(made, child);
  }
  if (path) return const_cast<Instance*>(&made);
  for (const PropertyDef* key : classDef.keys()) {
    const NamedValue* const given = made.body().properties.find(key->name);
    if (given && !isNull(given->data)) own.body().keys.append(_arena, key->name).data = given->data;
  }
  made.ft->setObjectPath(&made, &own);
  return const_cast<Instance*>(&made);
}

}  // namespace ZebManager
