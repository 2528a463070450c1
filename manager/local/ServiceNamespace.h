// What a running service serves.
#pragma once

#include <functional>
#include <string>
#include <utility>

#include "cimxml/MessageNamespace.h"

namespace ZebManager {

/// For one thread. Operations throw what `ask` does.
class ServiceNamespace : public MessageNamespace {
 public:
  /// The answer to a request.
  using Ask = std::function<std::string(const std::string& request)>;

  ServiceNamespace(Ask ask, const ClassRepository& repository)
      : MessageNamespace(repository), _ask(std::move(ask)) {}

 protected:
  std::string send(const std::string& request) override { return _ask(request); }

 private:
  const Ask _ask;
};

}  // namespace ZebManager
