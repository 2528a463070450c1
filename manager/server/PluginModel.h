// What the plug-in's process serves, for those parts of the server that read it.
#pragma once

#include <functional>
#include <string>
#include <utility>

#include "cimxml/MessageNamespace.h"
#include "isolation/ProviderSupervisor.h"

namespace ZebManager {

/// For reading; safe from several threads. Operations throw ManagerError when the plug-in gives no answer.
class PluginModel : public MessageNamespace {
 public:
  using Ask = std::function<ProviderSupervisor::Answer(const std::string& request)>;

  PluginModel(const ClassRepository& classes, Ask ask) : MessageNamespace(classes), _ask(std::move(ask)) {}

 protected:
  std::string send(const std::string& request) override {
    ProviderSupervisor::Answer answer = _ask(request);
    if (answer.outcome != ProviderSupervisor::Answer::Outcome::Done) throw ManagerError(answer.body);
    return std::move(answer.body);
  }

 private:
  const Ask _ask;
};

}  // namespace ZebManager
