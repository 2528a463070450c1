#pragma once

#include <optional>
#include <vector>

#include "cmpicpp/CmpiInstance.h"

namespace CmpiCpp {

/// What an operation found, as plain values in the order in which they were returned. The object manager gets
/// them after the operation has ended and has let go of its locks.
class CmpiObjectPathResult {
 public:
  void returnObjectPath(CmpiObjectPath path) { _paths.push_back(std::move(path)); }
  const std::vector<CmpiObjectPath>& paths() const { return _paths; }

 private:
  std::vector<CmpiObjectPath> _paths;
};

/// See `CmpiObjectPathResult`.
class CmpiInstanceResult {
 public:
  void returnInstance(CmpiInstance instance) { _instances.push_back(std::move(instance)); }
  const std::vector<CmpiInstance>& instances() const { return _instances; }
  /// Leaves none behind.
  std::vector<CmpiInstance> take() { return std::move(_instances); }

 private:
  std::vector<CmpiInstance> _instances;
};

/// The return value of a method.
class CmpiMethodResult {
 public:
  void returnData(CmpiData value) { _value = std::move(value); }
  const std::optional<CmpiData>& value() const { return _value; }

 private:
  std::optional<CmpiData> _value;
};

}  // namespace CmpiCpp
