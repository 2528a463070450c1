// Joining in memory what associations tie together.
#pragma once

#include <initializer_list>
#include <span>
#include <string>
#include <type_traits>
#include <unordered_map>
#include <vector>

#include "broker/Namespace.h"
#include "tree/PropertyView.h"
#include "values/ObjectPathText.h"

namespace ZebManager {

/// Throws ManagerError when the plug-in refused to say something of a class.
inline void requireAnswer(const Reply& reply, const char* className) {
  if (reply.code == CMPI_RC_OK) return;
  throw ManagerError("class '" + std::string(className) + "': " + CimError(reply.code, reply.message).what());
}

/// Calls `visit` with every instance of a class, or a view of it, which has those properties. Throws
/// ManagerError when the plug-in refuses.
template <class Visit>
void forEachInstance(Namespace& model, const char* className, std::span<const char* const> properties,
                     Visit visit) {
  std::vector<const char*> wanted(properties.begin(), properties.end());
  wanted.push_back(nullptr);
  const Reply reply = model.enumerateInstances(className, wanted.data());
  requireAnswer(reply, className);
  for (const CMPIData& item : reply.items()) {
    if (item.type != CMPI_instance) continue;
    const Instance& instance = *as<Instance>(item.value.inst);
    if constexpr (std::is_invocable_v<Visit, const Instance&>) {
      visit(instance);
    } else {
      visit(PropertyView(instance));
    }
  }
}

template <class Visit>
void forEachInstance(Namespace& model, const char* className, std::initializer_list<const char*> properties,
                     Visit visit) {
  forEachInstance(model, className, std::span(properties.begin(), properties.size()), visit);
}

/// Paths that an association leads to, by the path at its other end.
using Links = std::unordered_map<std::string, std::vector<std::string>>;

/// The path that a key of an association holds; null when it holds none.
inline const PathBody* endOf(const PathBody& association, std::string_view role) {
  const NamedValue* const end = association.keys.find(role);
  const ObjectPath* const path =
      end && end->data.type == CMPI_ref ? as<ObjectPath>(end->data.value.ref) : nullptr;
  return path ? &path->body() : nullptr;
}

/// Its text.
inline std::string pathInKey(const PathBody& association, std::string_view role) {
  const PathBody* const end = endOf(association, role);
  return end ? formatPath(*end) : std::string();
}

/// Calls `visit` with the path of every instance of a class. Throws ManagerError when the plug-in refuses.
template <class Visit>
void forEachName(Namespace& model, const char* className, Visit visit) {
  const Reply reply = model.enumerateInstanceNames(className);
  requireAnswer(reply, className);
  for (const CMPIData& item : reply.items()) {
    if (item.type == CMPI_ref) visit(as<ObjectPath>(item.value.ref)->body());
  }
}

/// The ends of an association are its keys, so that its names tell them. Throws ManagerError when the plug-in
/// refuses.
inline Links readLinks(Namespace& model, const char* association, const char* from, const char* to) {
  Links links;
  forEachName(model, association,
              [&](const PathBody& name) { links[pathInKey(name, from)].push_back(pathInKey(name, to)); });
  return links;
}

/// None where there is nothing that they could lead to or from.
template <class Ends>
Links readLinksIfAny(const Ends& ends, Namespace& model, const char* association, const char* from,
                     const char* to) {
  return ends.empty() ? Links() : readLinks(model, association, from, to);
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
