#include "cimxml/EnumerationPlan.h"

#include <algorithm>
#include <utility>

#include "cimxml/QueryOperations.h"

namespace ZebManager {
namespace {

constexpr std::string_view kWithPath = "<VALUE.INSTANCEWITHPATH>";
constexpr std::string_view kWithoutPath = "<INSTANCE ";

/// Below a class, those of which nothing is named: they have no instances, or some that cannot be asked for
/// by name. None of them descends from another.
std::vector<const ClassDef*> unnamedBelow(const ClassDef& root, const ClassRepository& repository,
                                          const std::set<const ClassDef*>& named) {
  std::vector<const ClassDef*> unnamed;
  for (const ClassDef* const classDef : repository.instantiable(root)) {
    const auto above = [&](const ClassDef* other) { return classDef->isA(*other); };
    const auto below = [&](const ClassDef* other) { return other->isA(*classDef); };
    if (std::ranges::none_of(unnamed, above) && std::ranges::none_of(named, below))
      unnamed.push_back(classDef);
  }
  return unnamed;
}

}  // namespace

std::string textOf(const EnumerationPlan& plan) {
  TextList list;
  for (const std::string& text : {plan.nameSpace, plan.only, std::string(plan.classOrigin ? "1" : "0"),
                                  plan.query, std::string(plan.properties ? "1" : "0")}) {
    list.append(text);
  }
  for (const std::string& name : plan.properties.value_or(std::vector<std::string>())) list.append(name);
  return std::move(list).takeBytes();
}

EnumerationPlan enumerationPlanOf(std::string_view text) {
  TextListReader reader(text);
  EnumerationPlan plan;
  plan.nameSpace = reader.next();
  plan.only = reader.next();
  plan.classOrigin = reader.nextNumber() != 0;
  plan.query = reader.next();
  if (reader.nextNumber() != 0) plan.properties.emplace();
  if (!plan.properties && !reader.atEnd()) throw TextListError("properties of a plan that has none");
  while (!reader.atEnd()) plan.properties->push_back(reader.next());
  return plan;
}

PlannedElements::PlannedElements(const EnumerationPlan& plan, Namespace& target)
    : _target(target), _query(plan.query.empty() ? nullptr : std::make_unique<OwnedQuery>(plan.query)) {
  if (plan.properties) _properties.emplace(*plan.properties);
  if (_query) {
    if (const auto selected = selectedProperties(_query->query())) _properties.emplace(*selected);
  }
  _view.properties = _properties ? _properties->get() : nullptr;
  _view.only = plan.only.empty() ? nullptr : target.repository().find(plan.only);
  _view.classOrigin = plan.classOrigin;
}

/// Whether there is an element more.
bool PlannedElements::add(const std::string& pathText, const Instance& instance, std::string& out) const {
  if (_query && !_query->matches(instance, _target.repository())) return false;
  if (!_query) out.append(kWithPath).append(pathText);
  appendInstance(out, instance.body(), _view);
  if (!_query) out += "</VALUE.INSTANCEWITHPATH>";
  return true;
}

bool PlannedElements::fetch(const std::string& pathText, const ObjectPath& path, std::string& out) const {
  const Reply reply = _target.getInstance(path, asked());
  if (reply.code == CMPI_RC_ERR_NOT_FOUND) return false;
  if (reply.code != CMPI_RC_OK) throw CimError(reply.code, reply.message);
  const Instance* const instance =
      reply.items().empty() ? nullptr : as<Instance>(reply.items().front().value.inst);
  return instance && add(pathText, *instance, out);
}

void PlannedElements::keepUnnamed(const ClassDef& root, const std::set<const ClassDef*>& named,
                                  TextList& kept) const {
  for (const ClassDef* const classDef : unnamedBelow(root, _target.repository(), named)) {
    const Reply reply = _target.enumerateInstances(classDef->name, asked()).orThrow();
    for (const CMPIData& item : reply.items()) {
      const Instance* const instance = as<Instance>(item.value.inst);
      std::string text;
      if (instance && add(pathTextOf(*instance->body().path), *instance, text)) kept.append(text);
    }
  }
}

bool PlannedElements::isKept(std::string_view text) {
  return text.starts_with(kWithPath) || text.starts_with(kWithoutPath);
}

std::string pathTextOf(const PathBody& path) {
  std::string text;
  appendInstancePath(text, path);
  return text;
}

}  // namespace ZebManager
