// Joining in memory what associations tie together.
#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "broker/Namespace.h"
#include "tree/PropertyView.h"

namespace ZebManager {

/// Calls `visit` with a view of every instance of a class. Throws ManagerError when the plug-in refuses.
template <class Visit>
void forEachInstance(Namespace& model, const char* className, Visit visit) {
  const Reply reply = model.enumerateInstances(className, nullptr);
  if (reply.code != CMPI_RC_OK) {
    throw ManagerError("class '" + std::string(className) +
                       "': " + CimError(reply.code, reply.message).what());
  }
  for (const CMPIData& item : reply.items()) {
    if (item.type == CMPI_instance) visit(PropertyView(*as<Instance>(item.value.inst)));
  }
}

/// Paths that an association leads to, by the path at its other end.
using Links = std::unordered_map<std::string, std::vector<std::string>>;

inline Links readLinks(Namespace& model, const char* association, const char* from, const char* to) {
  Links links;
  forEachInstance(model, association, [&](const PropertyView& view) {
    links[view.reference(from)].push_back(view.reference(to));
  });
  return links;
}

inline const std::vector<std::string>& follow(const Links& links, const std::string& path) {
  static const std::vector<std::string> kNone;
  const auto found = links.find(path);
  return found == links.end() ? kNone : found->second;
}

template <class Value>
const Value* findByPath(const std::unordered_map<std::string, Value>& values, const std::string& path) {
  const auto found = values.find(path);
  return found == values.end() ? nullptr : &found->second;
}

/// What the first link that leads to a known thing leads to.
template <class Value>
const Value* firstOf(const Links& links, const std::string& path,
                     const std::unordered_map<std::string, Value>& values) {
  for (const std::string& end : follow(links, path)) {
    if (const Value* value = findByPath(values, end)) return value;
  }
  return nullptr;
}

}  // namespace ZebManager
