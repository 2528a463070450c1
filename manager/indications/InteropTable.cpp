#include "indications/InteropTable.h"

#include <algorithm>
#include <set>

#include "broker/HostName.h"
#include "values/Values.h"

namespace ZebManager {
namespace {

constexpr char kManager[] = "zebcim";

CMPIData small(CMPIType type, std::uint64_t number) {
  CMPIValue value{};
  value.uint64 = number;
  return dataOf(type, value);
}

std::optional<std::chrono::system_clock::time_point> endOf(const StoredInstance& subscription) {
  const auto duration = subscription.number("SubscriptionDuration");
  const CMPIData* const start = subscription.value("SubscriptionStartTime");
  if (!duration || !start) return std::nullopt;
  constexpr std::uint64_t kLongest = std::uint64_t{100} * 365 * 24 * 3600;
  const auto begin = std::chrono::microseconds(as<DateTime>(start->value.dateTime)->body().microseconds);
  return std::chrono::system_clock::time_point(begin + std::chrono::seconds(std::min(*duration, kLongest)));
}

/// What a modification asks for: with a list all that is on it, without one all that has a value or is given
/// as null.
std::vector<std::string> changedProperties(const StoredInstance& stored, const Instance& given,
                                           PropertyList properties) {
  std::vector<std::string> names;
  for (PropertyList listed = properties; listed && *listed; ++listed) {
    const PropertyDef* const property = stored.classDef().property(*listed);
    if (!property) {
      throw Refusal(CMPI_RC_ERR_NO_SUCH_PROPERTY,
                    stored.classDef().name + " has no property '" + *listed + "'");
    }
    names.push_back(property->name);
  }
  if (properties) return names;
  for (const NamedValue& property : given.body().properties) names.emplace_back(property.name);
  return names;
}

}  // namespace

InteropTable::InteropTable(const ClassRepository& repository, const ClassRepository& sources,
                           const InteropSettings& settings, LogLine log)
    : _repository(repository),
      _settings(settings),
      _names(repository, kInteropNameSpace, settings.systemName.empty() ? hostName() : settings.systemName),
      _rules(_names, sources, settings.sourceNameSpace),
      _log(std::move(log)),
      _store(settings.directory, _names, _log) {
  addFixed();
  _store.load([this](std::unique_ptr<StoredInstance> stored) {
    const std::string name = _names.nameOf(*stored->instance->body().path);
    _made += _instances.emplace(name, std::move(stored)).second ? 1 : 0;
  });
}

void InteropTable::addFixed() {
  const auto add = [this](const char* className, const std::function<void(StoredInstance&)>& fill) {
    const ClassDef* const classDef = _repository.find(className);
    if (!classDef) return;
    auto stored = std::make_unique<StoredInstance>(*classDef, kInteropNameSpace);
    fill(*stored);
    _rules.complete(*stored);
    stored->completePath();
    stored->fixed = true;
    const std::string name = _names.nameOf(*stored->instance->body().path);
    _instances.emplace(name, std::move(stored));
  };
  add("CIM_ObjectManager", [](StoredInstance& manager) {
    manager.setText("Name", kManager);
    manager.setText("ElementName", kManager);
    manager.set("Started", small(CMPI_boolean, 1));
    manager.set("EnabledState", small(CMPI_uint16, 2));
    manager.set("GatherStatisticalData", small(CMPI_boolean, 0));
  });
  for (const std::string& nameSpace : {std::string(kInteropNameSpace), _settings.sourceNameSpace}) {
    add("CIM_Namespace", [&](StoredInstance& described) {
      described.setText("ObjectManagerCreationClassName", "CIM_ObjectManager");
      described.setText("ObjectManagerName", kManager);
      described.setText("Name", nameSpace);
      described.set("ClassInfo", small(CMPI_uint16, 0));
    });
  }
}

const ClassDef& InteropTable::requireClass(std::string_view className, CMPIrc code) const {
  if (const ClassDef* const found = _repository.find(className)) return *found;
  throw Refusal(code, "unknown class '" + std::string(className) + "'");
}

const StoredInstance* InteropTable::find(const std::string& name) const {
  const auto found = _instances.find(name);
  return found == _instances.end() ? nullptr : found->second.get();
}

const StoredInstance& InteropTable::get(const PathBody& path) const {
  const std::string name = _names.nameOf(path);
  if (const StoredInstance* const found = find(name)) return *found;
  throw Refusal(CMPI_RC_ERR_NOT_FOUND, "there is no " + name);
}

std::vector<const StoredInstance*> InteropTable::ofClass(std::string_view className) const {
  const ClassDef& root = requireClass(className, CMPI_RC_ERR_INVALID_CLASS);
  std::vector<const StoredInstance*> found;
  for (const auto& [name, stored] : _instances) {
    if (stored->classDef().isA(root)) found.push_back(stored.get());
  }
  return found;
}

/// The file first: what cannot be kept is not there.
void InteropTable::keep(const std::string& name, std::unique_ptr<StoredInstance> stored) {
  try {
    _store.put(name, *stored);
  } catch (const SqliteError& error) {
    _log(std::string("an instance cannot be kept: ") + error.what());
    throw Refusal(CMPI_RC_ERR_FAILED, std::string("it cannot be kept: ") + error.what());
  }
  _instances[name] = std::move(stored);
}

const StoredInstance& InteropTable::create(const ObjectPath& path, const Instance& given) {
  const ClassDef& classDef = requireClass(given.body().classDef->name, CMPI_RC_ERR_INVALID_CLASS);
  _rules.requireCreatable(classDef);
  auto stored = std::make_unique<StoredInstance>(classDef, kInteropNameSpace);
  for (const NamedValue& property : given.body().properties) {
    if (!isNull(property.data)) stored->set(std::string(property.name), property.data);
  }
  for (const NamedValue& key : path.body().keys) {
    if (!stored->value(key.name)) stored->set(std::string(key.name), dataOf(key.data.type, key.data.value));
  }
  _rules.complete(*stored);
  _rules.noteState(*stored);
  _rules.resolve(*stored, [this](const std::string& name) { return find(name); });
  _rules.check(*stored);
  stored->completePath();
  const std::string name = _names.nameOf(*stored->instance->body().path);
  if (find(name)) throw Refusal(CMPI_RC_ERR_ALREADY_EXISTS, "there is already " + name);
  if (_made >= _settings.mostInstances) {
    throw Refusal(CMPI_RC_ERR_FAILED, "there are already " + std::to_string(_made) + " instances");
  }
  keep(name, std::move(stored));
  ++_made;
  return *find(name);
}

void InteropTable::modify(const PathBody& path, const Instance& given, PropertyList properties) {
  const StoredInstance& before = get(path);
  if (before.fixed) throw Refusal(CMPI_RC_ERR_NOT_SUPPORTED, "it cannot be modified");
  auto after = std::make_unique<StoredInstance>(before);
  for (const std::string& name : changedProperties(before, given, properties)) {
    const NamedValue* const value = given.body().properties.find(name);
    const PropertyDef* const property = before.classDef().property(name);
    after->set(name, value ? value->data : nullOf(property ? property->type : CMPI_null));
  }
  _rules.complete(*after);
  _rules.resolve(*after, [this](const std::string& name) { return find(name); });
  if (before.number("SubscriptionState") != after->number("SubscriptionState")) _rules.noteState(*after);
  _rules.check(*after);
  after->completePath();
  const std::string name = _names.nameOf(*before.instance->body().path);
  if (_names.nameOf(*after->instance->body().path) != name) {
    throw Refusal(CMPI_RC_ERR_INVALID_PARAMETER, "keys cannot be modified");
  }
  keep(name, std::move(after));
}

void InteropTable::remove(const PathBody& path) {
  const StoredInstance& stored = get(path);
  if (stored.fixed) throw Refusal(CMPI_RC_ERR_NOT_SUPPORTED, "it cannot be deleted");
  if (!links(path, {}).empty() && !stored.classDef().association) {
    throw Refusal(CMPI_RC_ERR_FAILED, "a subscription uses it: delete that first");
  }
  const std::string name = _names.nameOf(path);
  try {
    _store.remove(name);
  } catch (const SqliteError& error) {
    throw Refusal(CMPI_RC_ERR_FAILED, std::string("it cannot be deleted: ") + error.what());
  }
  _instances.erase(name);
  --_made;
}

std::vector<InteropTable::Link> InteropTable::links(const PathBody& path,
                                                    const AssociationFilter& filter) const {
  const StoredInstance& start = get(path);
  const std::string from = _names.nameOf(*start.instance->body().path);
  for (const std::string& className : {filter.associationClass, filter.resultClass}) {
    if (!className.empty()) requireClass(className, CMPI_RC_ERR_INVALID_PARAMETER);
  }
  std::vector<Link> found;
  for (const auto& [name, stored] : _instances) {
    const ClassDef& classDef = stored->classDef();
    const bool wanted =
        filter.associationClass.empty() || _repository.isA(classDef.name, filter.associationClass);
    if (classDef.association && wanted) linksThrough(*stored, from, filter, found);
  }
  return found;
}

void InteropTable::linksThrough(const StoredInstance& association, const std::string& from,
                                const AssociationFilter& filter, std::vector<Link>& links) const {
  const auto fits = [](const std::string& role, const NamedValue& end) {
    return end.data.type == CMPI_ref && !isNull(end.data) && (role.empty() || sameName(role, end.name));
  };
  for (const NamedValue& near : association.instance->body().properties) {
    if (!fits(filter.role, near) || _names.nameOf(near.data) != from) continue;
    for (const NamedValue& far : association.instance->body().properties) {
      if (&far == &near || !fits(filter.resultRole, far)) continue;
      const StoredInstance* const end = find(_names.nameOf(far.data));
      const bool wanted =
          end && (filter.resultClass.empty() || _repository.isA(end->classDef().name, filter.resultClass));
      if (wanted) links.push_back({&association, end});
    }
  }
}

std::vector<const StoredInstance*> InteropTable::enabledSubscriptions() const {
  std::vector<const StoredInstance*> enabled;
  for (const auto& [name, stored] : _instances) {
    const bool subscription = _repository.isA(stored->classDef().name, kSubscriptionClass);
    if (!subscription || !isEnabled(*stored)) continue;
    const bool whole =
        find(_names.nameOf(*stored->value("Filter"))) && find(_names.nameOf(*stored->value("Handler")));
    if (whole) enabled.push_back(stored.get());
  }
  return enabled;
}

std::vector<IndicationFilter> InteropTable::wantedFilters() const {
  std::set<std::string> names;
  for (const StoredInstance* subscription : enabledSubscriptions())
    names.insert(_names.nameOf(*subscription->value("Filter")));
  std::vector<IndicationFilter> filters;
  for (const std::string& name : names) {
    const StoredInstance& filter = *find(name);
    filters.push_back({name, filter.text("Query"), filter.text("QueryLanguage")});
  }
  return filters;
}

std::vector<Subscription> InteropTable::subscriptions() const {
  std::vector<Subscription> list;
  for (const StoredInstance* subscription : enabledSubscriptions()) {
    const std::string handler = _names.nameOf(*subscription->value("Handler"));
    list.push_back({_names.nameOf(*subscription->instance->body().path),
                    _names.nameOf(*subscription->value("Filter")), handler,
                    find(handler)->text("Destination"), endOf(*subscription)});
  }
  return list;
}

}  // namespace ZebManager
