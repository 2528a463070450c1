// How the instances of an enumeration become its elements.
#pragma once

#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "broker/Namespace.h"
#include "cimxml/Parameters.h"
#include "cimxml/TextList.h"
#include "cimxml/ValueWriter.h"
#include "query/Condition.h"
#include "values/CallMemory.h"

namespace ZebManager {

/// What instances are asked for and how they are written, the same for all of an enumeration.
struct EnumerationPlan {
  std::string nameSpace;
  std::string only;  ///< class whose properties alone are written; empty for all
  bool classOrigin = false;
  std::optional<std::vector<std::string>> properties;
  std::string query;  ///< empty for all instances
};

std::string textOf(const EnumerationPlan& plan);
/// Throws TextListError for what is no plan.
EnumerationPlan enumerationPlanOf(std::string_view text);

/// Writes the instances of a plan. Both have to outlive it.
class PlannedElements {
 public:
  PlannedElements(const EnumerationPlan& plan, Namespace& target);

  /// Whether there is an element more, of the instance that is at a path now. Throws CimError.
  bool fetch(const std::string& pathText, const ObjectPath& path, std::string& out) const;
  /// Below `root`, instances of classes of which nothing is named, as the elements that they come to: nobody
  /// can ask for them later. Throws CimError.
  void keepUnnamed(const ClassDef& root, const std::set<const ClassDef*>& named, TextList& kept) const;
  /// Whether a text is an element, and not a path.
  static bool isKept(std::string_view text);

 private:
  /// Properties that the namespace is asked for; null for all.
  PropertyList asked() const { return _query ? nullptr : _view.properties; }
  bool add(const std::string& pathText, const Instance& instance, std::string& out) const;

  Namespace& _target;
  const std::unique_ptr<OwnedQuery> _query;
  std::optional<NameList> _properties;
  InstanceView _view;
};

/// INSTANCEPATH.
std::string pathTextOf(const PathBody& path);

}  // namespace ZebManager
