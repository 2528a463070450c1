#include "indications/InteropTable.h"

#include <algorithm>
#include <numeric>

#include "broker/HostName.h"
#include "values/Values.h"

namespace ZebManager {
namespace {

/// By the date when it is asked; later changes of the date have no part in it.
std::optional<BootClock::time_point> endOf(const StoredInstance& subscription) {
  const auto duration = subscription.number("SubscriptionDuration");
  const CMPIData* const start = subscription.value("SubscriptionStartTime");
  if (!duration || !start) return std::nullopt;
  constexpr std::uint64_t kLongest = std::uint64_t{100} * 365 * 24 * 3600;
  const auto begin = std::chrono::microseconds(as<DateTime>(start->value.dateTime)->body().microseconds);
  const auto end = begin + std::chrono::seconds(std::min(*duration, kLongest));
  return BootClock::now() + (end - std::chrono::system_clock::now().time_since_epoch());
}

/// Whether two subscriptions begin and last alike.
bool sameTimes(const StoredInstance& a, const StoredInstance& b) {
  const auto startOf = [](const StoredInstance& subscription) {
    const CMPIData* const start = subscription.value("SubscriptionStartTime");
    return start ? as<DateTime>(start->value.dateTime)->body().microseconds : 0;
  };
  return startOf(a) == startOf(b) && a.number("SubscriptionDuration") == b.number("SubscriptionDuration");
}

std::size_t bytesOf(const CMPIData& data) {
  if (isNull(data)) return 0;
  if (data.type == CMPI_string) return textOf(data.value.string).size();
  if (!isArray(data.type)) return sizeof data;
  const ArrayBody& array = as<Array>(data.value.array)->body();
  return std::accumulate(array.elements, array.elements + array.count, sizeof data,
                         [](std::size_t sum, const CMPIData& element) { return sum + bytesOf(element); });
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
  try {
    _store.load([this](std::unique_ptr<StoredInstance> stored) {
      complete(*stored);
      take(std::move(stored));
    });
  } catch (const SqliteError& error) {
    if (!error.damaged()) throw;
    saveAnew(error.what());
  }
  for (const auto& [name, stored] : _instances) {
    if (auto subscription = subscriptionOf(*stored)) _subscriptions.emplace(name, std::move(*subscription));
  }
}

/// What is asked of an instance again and again.
void InteropTable::complete(StoredInstance& stored) const {
  stored.completePath();
  stored.name = _names.nameOf(*stored.instance->body().path);
  stored.bytes = stored.name.size();
  for (const NamedValue& property : stored.instance->body().properties) {
    stored.bytes += bytesOf(property.data);
    if (property.data.type == CMPI_ref && !isNull(property.data))
      stored.ends[std::string(property.name)] = _names.nameOf(property.data);
  }
  stored.subscribes = _repository.isA(stored.classDef().name, kSubscriptionClass);
  if (stored.subscribes) stored.until = endOf(stored);
}

void InteropTable::take(std::unique_ptr<StoredInstance> stored) {
  std::unique_ptr<StoredInstance>& place = _instances[stored->name];
  if (!stored->fixed) {
    _made += place ? 0 : 1;
    _bytes += stored->bytes - (place ? place->bytes : 0);
  }
  place = std::move(stored);
}

void InteropTable::checkPlace(const StoredInstance& stored) const {
  const StoredInstance* const before = find(stored.name);
  if (!before && _made >= _settings.mostInstances) {
    throw Refusal(CMPI_RC_ERR_FAILED, "there are already " + std::to_string(_made) + " instances");
  }
  if (_bytes + stored.bytes - (before ? before->bytes : 0) > _settings.mostBytes) {
    throw Refusal(CMPI_RC_ERR_FAILED, "all instances together would be longer than " +
                                          std::to_string(_settings.mostBytes) + " bytes");
  }
}

/// What is known goes into a fresh file; what that does not take now goes into it before the next change.
void InteropTable::saveAnew(const std::string& why) {
  _incomplete = true;
  _store.beginAnew(why);
  completeFile();
}

void InteropTable::completeFile() {
  if (!_incomplete) return;
  for (const auto& [name, stored] : _instances) {
    if (!stored->fixed) _store.put(name, *stored);
  }
  _incomplete = false;
}

/// A damaged file is no reason to refuse what a fresh one takes.
void InteropTable::change(const std::function<void()>& write) {
  try {
    completeFile();
    write();
  } catch (const SqliteError& error) {
    if (!error.damaged()) throw;
    saveAnew(error.what());
    write();
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
void InteropTable::keep(std::unique_ptr<StoredInstance> stored) {
  checkPlace(*stored);
  try {
    change([&] { _store.put(stored->name, *stored); });
  } catch (const ManagerError& error) {
    _log(std::string("an instance cannot be kept: ") + error.what());
    throw Refusal(CMPI_RC_ERR_FAILED, std::string("it cannot be kept: ") + error.what());
  }
  const std::string name = stored->name;
  take(std::move(stored));
  follow(name);
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
  complete(*stored);
  const std::string name = stored->name;
  if (find(name)) throw Refusal(CMPI_RC_ERR_ALREADY_EXISTS, "there is already " + name);
  keep(std::move(stored));
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
  complete(*after);
  if (after->name != before.name) throw Refusal(CMPI_RC_ERR_INVALID_PARAMETER, "keys cannot be modified");
  if (sameTimes(before, *after)) after->until = before.until;
  keep(std::move(after));
}

void InteropTable::remove(const PathBody& path) {
  const StoredInstance& stored = get(path);
  if (stored.fixed) throw Refusal(CMPI_RC_ERR_NOT_SUPPORTED, "it cannot be deleted");
  if (!stored.classDef().association && isUsed(stored.name)) {
    throw Refusal(CMPI_RC_ERR_FAILED, "a subscription uses it: delete that first");
  }
  const std::string name = stored.name;
  try {
    change([&] { _store.remove(name); });
  } catch (const ManagerError& error) {
    throw Refusal(CMPI_RC_ERR_FAILED, std::string("it cannot be deleted: ") + error.what());
  }
  _bytes -= stored.bytes;
  _instances.erase(name);
  --_made;
  _subscribed += _subscriptions.erase(name);
}

bool InteropTable::isUsed(const std::string& name) const {
  return std::ranges::any_of(_instances, [&](const auto& entry) {
    return std::ranges::any_of(entry.second->ends, [&](const auto& end) { return end.second == name; });
  });
}

}  // namespace ZebManager
