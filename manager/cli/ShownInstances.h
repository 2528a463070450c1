// All instances of a class as JSON, made where the instances are: the way over CIM-XML, there and back, takes
// longer than everything else that a service does for them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "broker/Namespace.h"
#include "cli/JsonOutput.h"

namespace ZebManager {

struct ShownQuestion {
  std::string className;
  JsonForm form;
};

/// A message that asks the plug-in's process for them, and what it asks for; nothing for another message.
std::string shownMessage(std::string_view className, JsonForm form);
std::optional<ShownQuestion> shownAskedFor(std::string_view message);

/// What `writeItems` writes. Throws CimError when the namespace refuses.
std::string jsonOfClass(Namespace& model, const ShownQuestion& question);
/// The same; when the namespace refuses, the answer that says so.
std::string shownInstances(Namespace& model, const ShownQuestion& question);
inline bool isJson(std::string_view shown) {
  return shown.starts_with('[');
}

}  // namespace ZebManager
