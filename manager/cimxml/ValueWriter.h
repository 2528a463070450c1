// Values, paths and instances as XML.
#pragma once

#include <string>

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
/// VALUE, VALUE.ARRAY, VALUE.REFERENCE or VALUE.REFARRAY; nothing for null.
void appendValue(std::string& out, const CMPIData& data);
/// PARAMVALUE or RETURNVALUE, whose attributes beside the type are `attributes`.
void appendParameter(std::string& out, std::string_view element, std::string_view name, const CMPIData& data);
/// What a type without arrays is called.
std::string_view xmlTypeName(CMPIType type);

}  // namespace ZebManager
