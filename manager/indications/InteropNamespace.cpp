#include "indications/InteropNamespace.h"

#include <algorithm>

#include "indications/InteropTable.h"
#include "values/Values.h"

namespace ZebManager {
namespace {

const PathBody& bodyOf(const CMPIObjectPath& path) {
  if (const ObjectPath* const own = as<ObjectPath>(&path)) return own->body();
  throw Refusal(CMPI_RC_ERR_INVALID_PARAMETER, "the path is of another object manager");
}

const Instance& ownOf(const CMPIInstance& instance) {
  if (const Instance* const own = as<Instance>(&instance)) return *own;
  throw Refusal(CMPI_RC_ERR_INVALID_PARAMETER, "the instance is of another object manager");
}

ListBody& itemsOf(Reply& reply) {
  return reply.result()->body();
}

void addPath(Reply& reply, const StoredInstance& stored) {
  ListBody& items = itemsOf(reply);
  items.append(
      dataOf(makeHandle<ObjectPath>(*items.keep, copyPath(*items.keep, *stored.instance->body().path))));
}

/// How long a subscription still lasts. Only now it is known.
void addTimeRemaining(Instance& copy, const StoredInstance& stored) {
  if (!stored.until) return;
  const auto time = std::chrono::floor<std::chrono::seconds>(*stored.until - BootClock::now());
  CMPIValue left{};
  left.uint64 = static_cast<std::uint64_t>(std::max(time, std::chrono::seconds(0)).count());
  copy.ft->setProperty(&copy, "SubscriptionTimeRemaining", &left, CMPI_uint64);
}

/// With the properties that are asked for, and the keys.
void addInstance(Reply& reply, const StoredInstance& stored, PropertyList properties) {
  Arena& keep = *itemsOf(reply).keep;
  const InstanceBody& body = stored.instance->body();
  const ObjectPath* const path = makeHandle<ObjectPath>(keep, copyPath(keep, *body.path));
  Instance* const copy = makeInstance(keep, *path, *body.classDef);
  copy->ft->setPropertyFilter(copy, const_cast<const char**>(properties), nullptr);
  for (const NamedValue& property : body.properties) {
    copy->ft->setProperty(copy, property.name.data(), isNull(property.data) ? nullptr : &property.data.value,
                          property.data.type);
  }
  addTimeRemaining(*copy, stored);
  copy->ft->setPropertyFilter(copy, nullptr, nullptr);
  itemsOf(reply).append(dataOf(copy));
}

/// Every instance once, also where several associations lead to it.
std::vector<const StoredInstance*> unique(const std::vector<InteropTable::Link>& links,
                                          const StoredInstance* InteropTable::Link::*member) {
  std::vector<const StoredInstance*> found;
  for (const InteropTable::Link& link : links) {
    if (std::ranges::find(found, link.*member) == found.end()) found.push_back(link.*member);
  }
  return found;
}

/// Requests for references name the association where others name the class at the other end.
AssociationFilter forReferences(const AssociationFilter& filter) {
  return {filter.resultClass, "", filter.role, ""};
}

template <class Work>
Reply perform(std::mutex& mutex, const Work& work) {
  try {
    Reply reply;
    const std::lock_guard lock(mutex);
    work(reply);
    return reply;
  } catch (const Refusal& refusal) {
    Reply reply;
    reply.code = refusal.code;
    reply.message = refusal.what();
    return reply;
  }
}

}  // namespace

InteropNamespace::InteropNamespace(const ClassRepository& repository, const ClassRepository& sources,
                                   const InteropSettings& settings, LogLine log,
                                   std::function<void()> changed)
    : _repository(repository),
      _changed(std::move(changed)),
      _table(std::make_unique<InteropTable>(repository, sources, settings, std::move(log))) {}

InteropNamespace::~InteropNamespace() = default;

std::vector<IndicationFilter> InteropNamespace::wantedFilters() const {
  const std::lock_guard lock(_mutex);
  return _table->wantedFilters();
}

std::vector<Subscription> InteropNamespace::subscriptions() const {
  const std::lock_guard lock(_mutex);
  return _table->subscriptions();
}

/// One after the other, so that the last one sees what the last change made.
Reply InteropNamespace::change(const std::function<void(Reply&)>& work) {
  bool subscribed = false;
  Reply reply = perform(_mutex, [&](Reply& made) {
    const std::size_t before = _table->subscribed();
    work(made);
    subscribed = _table->subscribed() != before;
  });
  if (!subscribed || !_changed) return reply;
  const std::lock_guard lock(_announcing);
  _changed();
  return reply;
}

Reply InteropNamespace::enumerateInstances(std::string_view className, PropertyList properties) {
  return perform(_mutex, [&](Reply& reply) {
    for (const StoredInstance* stored : _table->ofClass(className)) addInstance(reply, *stored, properties);
  });
}

Reply InteropNamespace::enumerateInstanceNames(std::string_view className) {
  return perform(_mutex, [&](Reply& reply) {
    for (const StoredInstance* stored : _table->ofClass(className)) addPath(reply, *stored);
  });
}

Reply InteropNamespace::getInstance(const CMPIObjectPath& path, PropertyList properties) {
  return perform(_mutex, [&](Reply& reply) { addInstance(reply, _table->get(bodyOf(path)), properties); });
}

Reply InteropNamespace::createInstance(const CMPIObjectPath& path, const CMPIInstance& instance) {
  return change([&](Reply& reply) {
    bodyOf(path);
    addPath(reply, _table->create(*as<ObjectPath>(&path), ownOf(instance)));
  });
}

Reply InteropNamespace::modifyInstance(const CMPIObjectPath& path, const CMPIInstance& instance,
                                       PropertyList properties) {
  return change([&](Reply&) { _table->modify(bodyOf(path), ownOf(instance), properties); });
}

Reply InteropNamespace::deleteInstance(const CMPIObjectPath& path) {
  return change([&](Reply&) { _table->remove(bodyOf(path)); });
}

Reply InteropNamespace::associators(const CMPIObjectPath& path, const AssociationFilter& filter,
                                    PropertyList properties) {
  return perform(_mutex, [&](Reply& reply) {
    const auto links = _table->links(bodyOf(path), filter);
    for (const auto* end : unique(links, &InteropTable::Link::end)) addInstance(reply, *end, properties);
  });
}

Reply InteropNamespace::associatorNames(const CMPIObjectPath& path, const AssociationFilter& filter) {
  return perform(_mutex, [&](Reply& reply) {
    const auto links = _table->links(bodyOf(path), filter);
    for (const auto* end : unique(links, &InteropTable::Link::end)) addPath(reply, *end);
  });
}

Reply InteropNamespace::references(const CMPIObjectPath& path, const AssociationFilter& filter,
                                   PropertyList properties) {
  return perform(_mutex, [&](Reply& reply) {
    const auto links = _table->links(bodyOf(path), forReferences(filter));
    for (const auto* link : unique(links, &InteropTable::Link::association))
      addInstance(reply, *link, properties);
  });
}

Reply InteropNamespace::referenceNames(const CMPIObjectPath& path, const AssociationFilter& filter) {
  return perform(_mutex, [&](Reply& reply) {
    const auto links = _table->links(bodyOf(path), forReferences(filter));
    for (const auto* link : unique(links, &InteropTable::Link::association)) addPath(reply, *link);
  });
}

Reply InteropNamespace::invokeMethod(const CMPIObjectPath& path, const char* method, const CMPIArgs&,
                                     CMPIArgs&) {
  return perform(_mutex, [&](Reply&) {
    throw Refusal(CMPI_RC_ERR_METHOD_NOT_FOUND,
                  std::string(bodyOf(path).className) + " has no method '" + (method ? method : "") + "'");
  });
}

}  // namespace ZebManager
