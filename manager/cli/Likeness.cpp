#include "cli/Likeness.h"

#include <algorithm>
#include <cctype>

#include "broker/Broker.h"
#include "cli/InterfaceNames.h"
#include "cli/JsonOutput.h"
#include "tree/Links.h"
#include "values/ObjectPathText.h"
#include "values/Values.h"

namespace ZebManager {
namespace {

using Json = nlohmann::ordered_json;

/// The farthest: from a place to the package in it, the controller in that, and its ports.
constexpr int kSteps = 3;

std::string withoutNumbers(const Json& value) {
  std::string text = value.dump(-1, ' ', false, Json::error_handler_t::replace);
  if (!value.is_number()) std::erase_if(text, [](unsigned char c) { return std::isdigit(c); });
  return text;
}

bool alike(const InstanceValues& one, const InstanceValues& other) {
  return std::ranges::equal(one.items(), other.items(), [](const auto& a, const auto& b) {
    return a.key() == b.key() && withoutNumbers(a.value()) == withoutNumbers(b.value());
  });
}

std::ptrdiff_t equalOnes(const InstanceValues& one, const InstanceValues& other) {
  return std::ranges::count_if(one.items(),
                               [&](const auto& value) { return other.at(value.key()) == value.value(); });
}

/// Of a class and, where it has none of its own, of that above it: what clients are asked to call
/// is only found there.
Reply instancesOf(Namespace& model, const std::string& className) {
  Reply own = model.enumerateInstances(className.c_str(), nullptr);
  const ClassDef* const above = requireClass(model.repository(), className).superclass;
  if (!own.items().empty() || !above) return own;
  return model.enumerateInstances(above->name.c_str(), nullptr);
}

class Walk {
 public:
  explicit Walk(Namespace& model) : _model(model) {}

  void from(const ObjectPath& path, int steps) {
    const PathBody& body = path.body();
    if (!_seen.insert(formatPath(body)).second) return;
    if (InterfaceNames::has(_model.repository(), body.className)) {
      names.insert(interfaceName(_model, path));
      return;
    }
    bool isAssociation = false;
    for (const NamedValue& key : body.keys) {
      if (key.data.type != CMPI_ref) continue;
      isAssociation = true;
      from(*as<ObjectPath>(key.data.value.ref), steps);
    }
    if (isAssociation || steps == 0 || isHub(body.className)) return;
    const Reply reply = _model.associatorNames(path, {});
    for (const CMPIData& item : reply.items()) from(*as<ObjectPath>(item.value.ref), steps - 1);
  }

  std::set<std::string> names;

 private:
  bool isHub(std::string_view className) const {
    return _model.repository().isA(className, "CIM_System") ||
           _model.repository().isA(className, "CIM_Collection");
  }

  Namespace& _model;
  std::set<std::string> _seen;
};

}  // namespace

InstanceValues valuesOf(const Instance& instance) {
  return Json::parse(jsonLineOfInstance(instance, JsonForm::Plain))["properties"];
}

std::optional<InstanceValues> readValues(Namespace& model, const std::string& path) {
  Arena arena;
  const ObjectPath& named = *parsePath(arena, model.repository(), kNameSpace, path);
  const Reply one = model.getInstance(named, nullptr);
  if (one.code == CMPI_RC_OK && !one.items().empty())
    return valuesOf(*as<Instance>(one.items()[0].value.inst));
  const Reply all = instancesOf(model, std::string(named.body().className));
  for (const CMPIData& item : all.items()) {
    const Instance& instance = *as<Instance>(item.value.inst);
    if (formatPath(*instance.body().path) == path) return valuesOf(instance);
  }
  return std::nullopt;
}

std::vector<std::string> pathsBeside(Namespace& model, const std::string& path) {
  Arena arena;
  const std::string className(parsePath(arena, model.repository(), kNameSpace, path)->body().className);
  const Reply reply = model.enumerateInstanceNames(className.c_str());
  std::vector<std::string> paths;
  for (const CMPIData& item : reply.items())
    paths.push_back(formatPath(as<ObjectPath>(item.value.ref)->body()));
  return paths;
}

std::set<std::string> interfacesNear(Namespace& model, const std::string& path) {
  Arena arena;
  Walk walk(model);
  walk.from(*parsePath(arena, model.repository(), kNameSpace, path), kSteps);
  return walk.names;
}

Likeness Likeness::of(Namespace& model, const std::string& path, const InstanceValues& values) {
  Arena arena;
  const std::string name(parsePath(arena, model.repository(), kNameSpace, path)->body().className);
  const bool isOnlyOne = instancesOf(model, name).items().size() == 1;
  return {name, values, isOnlyOne ? std::set<std::string>() : interfacesNear(model, path), isOnlyOne};
}

bool Likeness::isAt(Namespace& model, const std::string& path) const {
  const auto there = readValues(model, path);
  return there && alike(values, *there) && (isOnlyOne || interfacesNear(model, path) == interfaces);
}

std::optional<std::string> Likeness::findIn(Namespace& model) const {
  const Reply reply = instancesOf(model, className);
  requireAnswer(reply, className.c_str());
  std::optional<std::string> best;
  std::ptrdiff_t most = -1;
  for (const CMPIData& item : reply.items()) {
    const Instance& instance = *as<Instance>(item.value.inst);
    const InstanceValues there = valuesOf(instance);
    if (!alike(values, there)) continue;
    const std::string path = formatPath(*instance.body().path);
    if (!isOnlyOne && interfacesNear(model, path) != interfaces) continue;
    const std::ptrdiff_t equal = equalOnes(values, there);
    if (equal == most) best.reset();
    if (equal <= most) continue;
    best = path;
    most = equal;
  }
  return best;
}

}  // namespace ZebManager
