#pragma once

#include <string_view>
#include <vector>

#include "cmpicpp/CmpiData.h"

namespace CmpiCpp {

/// Names of the properties that a client wants: a null-terminated array of C strings, or null for all of
/// them.
using CmpiPropertyList = const char* const*;

/// Whether a list that is not null names a property.
bool isNamed(CmpiPropertyList names, std::string_view property);

/// A CIM instance as a plain value: its path and its properties in the order in which they were first added.
class CmpiInstance {
 public:
  struct Property {
    CmpiName name;
    CmpiData value;
  };

  CmpiInstance() = default;
  explicit CmpiInstance(CmpiObjectPath path) : _path(std::move(path)) {}

  const CmpiObjectPath& path() const { return _path; }
  const CmpiName& className() const { return _path.className(); }
  const std::vector<Property>& properties() const { return _properties; }
  void reserve(std::size_t properties) { _properties.reserve(properties); }

  /// Adds a property; one that is there already gets the new value and keeps its place.
  void addProperty(CmpiName name, CmpiData value);
  /// Adds a property that the caller knows not to be there.
  void appendProperty(CmpiName name, CmpiData value) {
    Property& added = _properties.emplace_back();
    added.name = std::move(name);
    added.value = std::move(value);
  }

  /// Null when there is no property of that name.
  const CmpiData* findProperty(std::string_view name) const;
  /// Throws `CmpiStatus` with `CMPI_RC_ERR_NO_SUCH_PROPERTY` when there is none.
  const CmpiData& getProperty(std::string_view name) const;

  /// Drops every property that the list does not name.
  void keepOnly(CmpiPropertyList names);

 private:
  CmpiObjectPath _path;
  std::vector<Property> _properties;
};

}  // namespace CmpiCpp
