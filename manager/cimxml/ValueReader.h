// Paths, instances and values of a request.
#pragma once

#include <pugixml.hpp>
#include <string>
#include <string_view>

#include "values/ManagerError.h"
#include "values/Objects.h"

namespace ZebManager {

/// What a value belongs to, for errors: only then is there a text.
struct Holder {
  const char* kind;
  std::string_view name;

  std::string text() const { return std::string(kind) + "'" + std::string(name) + "'"; }
};

/// What is read lives in the arena. Members throw CimError for what the schema does not know or allow.
class ValueReader {
 public:
  /// `host`: of paths.
  ValueReader(Arena& arena, const ClassRepository& repository, std::string_view nameSpace,
              std::string_view host = {})
      : _arena(arena), _repository(repository), _nameSpace(nameSpace), _host(arena.copy(host)) {}

  const ClassDef& classNamed(std::string_view name) const;
  /// INSTANCENAME, LOCALINSTANCEPATH, INSTANCEPATH, or what holds one of them.
  ObjectPath* path(pugi::xml_node element) const;
  /// The value that stands in an element, converted to the type; null when there is none.
  CMPIData value(pugi::xml_node holder, CMPIType type, const Holder& what) const;
  /// An INSTANCE at a path; without one at a path that has its class and the keys that it gives.
  Instance* instance(pugi::xml_node element, const ObjectPath* path) const;

  Arena& arena() const { return _arena; }

 private:
  ObjectPath& newPath(std::string_view nameSpace, const ClassDef& classDef) const;
  CMPIData scalar(pugi::xml_node element, CMPIType type, const Holder& what) const;
  CMPIData text(const std::string& content, CMPIType type, const Holder& what) const;
  CMPIData array(pugi::xml_node element, CMPIType type, const Holder& what) const;
  void readKey(ObjectPath& path, const ClassDef& classDef, std::string_view name, pugi::xml_node value) const;
  void setProperty(const Instance& instance, pugi::xml_node element) const;

  Arena& _arena;
  const ClassRepository& _repository;
  std::string _nameSpace;
  std::string_view _host;
};

}  // namespace ZebManager
