// The parameters of an intrinsic method.
#pragma once

#include <map>
#include <optional>
#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "broker/ProviderCalls.h"
#include "schema/Caseless.h"

namespace ZebManager {

/// Names of properties as operations take them.
class NameList {
 public:
  NameList() = default;
  explicit NameList(std::vector<std::string> names);
  NameList(const NameList&) = delete;
  NameList& operator=(const NameList&) = delete;
  ~NameList() = default;

  /// Null for all.
  PropertyList get() const { return _pointers.empty() ? nullptr : _pointers.data(); }

 private:
  std::vector<std::string> _names;
  std::vector<const char*> _pointers;
};

/// Members throw CimError for what is given twice or in another form than is asked for. A parameter without a
/// value counts as one that is not given.
class Parameters {
 public:
  explicit Parameters(pugi::xml_node call);

  /// Refuses what is not among the names, which stand between blanks.
  void allowOnly(std::string_view names) const;

  bool flag(std::string_view name, bool otherwise) const;
  std::string text(std::string_view name) const;
  /// Of uint32; nothing when it is not given.
  std::optional<std::uint32_t> number(std::string_view name) const;
  /// NAME of a CLASSNAME; empty when none is given.
  std::string className(std::string_view name) const;
  /// The element that is the value; none when it is not given.
  pugi::xml_node element(std::string_view name) const;
  /// The same for one that has to be given.
  pugi::xml_node required(std::string_view name) const;
  /// The element that holds the value.
  pugi::xml_node holder(std::string_view name) const;
  /// Nothing when none is given, which stands for all.
  std::optional<std::vector<std::string>> names(std::string_view name) const;

 private:
  std::map<std::string, pugi::xml_node, std::less<>> _values;
};

}  // namespace ZebManager
