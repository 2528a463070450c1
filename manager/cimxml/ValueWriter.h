// Values, paths and instances as XML.
#pragma once

#include <string>
#include <vector>

#include "broker/ProviderCalls.h"

namespace ZebManager {

/// What of an instance is written.
struct InstanceView {
  PropertyList properties = nullptr;
  const ClassDef* only = nullptr;  ///< the properties that this class has; null for all
  bool classOrigin = false;
  bool qualifiers = false;
};

/// INSTANCENAME.
void appendInstanceName(std::string& out, const PathBody& path);
/// INSTANCEPATH; without a host in the path it is this machine's.
void appendInstancePath(std::string& out, const PathBody& path);
/// LOCALNAMESPACEPATH.
void appendLocalNameSpace(std::string& out, std::string_view nameSpace);
/// CLASSPATH.
void appendClassPath(std::string& out, std::string_view nameSpace, std::string_view className);
/// INSTANCE.
void appendInstance(std::string& out, const InstanceBody& instance, const InstanceView& view = {});

/// Writes the instances of an answer, nearly all of which have the same properties in the same order: the
/// start tag of a property is made once.
class InstanceWriter {
 public:
  explicit InstanceWriter(const InstanceView& view) : _view(view) {}

  /// As `appendInstance`.
  void append(std::string& out, const InstanceBody& instance);

 private:
  struct Start {
    std::string name;
    CMPIType type = CMPI_null;
    std::string tag;
  };

  const std::string& start(std::size_t place, const NamedValue& property);

  InstanceView _view;
  const ClassDef* _class = nullptr;
  std::vector<Start> _starts;  ///< of the instance before, by the property's place among those written
};

/// VALUE, VALUE.ARRAY, VALUE.REFERENCE or VALUE.REFARRAY; nothing for null.
void appendValue(std::string& out, const CMPIData& data);
/// PARAMVALUE or RETURNVALUE, whose attributes beside the type are `attributes`.
void appendParameter(std::string& out, std::string_view element, std::string_view name, const CMPIData& data);
/// What a type without arrays is called.
std::string_view xmlTypeName(CMPIType type);

}  // namespace ZebManager
