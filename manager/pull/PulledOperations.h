// The operations by which clients take an enumeration piece by piece.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "cimxml/Message.h"
#include "pull/EnumerationTable.h"

namespace ZebManager {

/// Performs a step of `EnumerationSteps.h` on a namespace. Throws CimError when it cannot be performed.
using StepPerformer = std::function<std::string(const std::string& step)>;

/// Safe from any thread.
class PulledOperations {
 public:
  explicit PulledOperations(const PullLimits& limits) : _limits(limits), _table(limits) {}

  static bool have(const CimMessage& message);
  /// The document that answers a request, which is one of them.
  std::string answer(std::string_view body, const CimMessage& message, const std::string& user,
                     const StepPerformer& perform);

 private:
  struct Asked;
  struct Row;
  static const Row* find(std::string_view operation);

  std::string open(const Asked& asked);
  std::string pull(const Asked& asked);
  std::string close(const Asked& asked);
  std::string count(const Asked& asked);
  std::shared_ptr<PulledEnumeration> opened(const Asked& asked, std::string& resultClass);

  const PullLimits _limits;
  EnumerationTable _table;
};

}  // namespace ZebManager
