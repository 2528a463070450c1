// What the instances of the table are to each other: associations, and the subscriptions that they come to.
#include <algorithm>
#include <set>

#include "indications/InteropTable.h"
#include "query/Condition.h"

namespace ZebManager {
namespace {

std::vector<std::string> selectedBy(const StoredInstance& filter) {
  try {
    const OwnedQuery query(filter.text("Query"));
    return {query.query().properties.begin(), query.query().properties.end()};
  } catch (const QueryError&) {
    return {};  // it selects no indications either
  }
}

}  // namespace

std::vector<InteropTable::Link> InteropTable::links(const PathBody& path,
                                                    const AssociationFilter& filter) const {
  const StoredInstance& start = get(path);
  for (const std::string& className : {filter.associationClass, filter.resultClass}) {
    if (!className.empty()) requireClass(className, CMPI_RC_ERR_INVALID_PARAMETER);
  }
  std::vector<Link> found;
  for (const auto& [name, stored] : _instances) {
    const ClassDef& classDef = stored->classDef();
    const bool wanted =
        filter.associationClass.empty() || _repository.isA(classDef.name, filter.associationClass);
    if (classDef.association && wanted) linksThrough(*stored, start.name, filter, found);
  }
  return found;
}

void InteropTable::linksThrough(const StoredInstance& association, const std::string& from,
                                const AssociationFilter& filter, std::vector<Link>& links) const {
  const auto fits = [](const std::string& wanted, const std::string& role) {
    return wanted.empty() || sameName(wanted, role);
  };
  for (const auto& [role, near] : association.ends) {
    if (near != from || !fits(filter.role, role)) continue;
    for (const auto& [otherRole, far] : association.ends) {
      if (otherRole == role || !fits(filter.resultRole, otherRole)) continue;
      const StoredInstance* const end = find(far);
      const bool wanted =
          end && (filter.resultClass.empty() || _repository.isA(end->classDef().name, filter.resultClass));
      if (wanted) links.push_back({&association, end});
    }
  }
}

/// Of a subscription that is enabled and has both ends.
std::optional<Subscription> InteropTable::subscriptionOf(const StoredInstance& stored) const {
  if (!stored.subscribes || !isEnabled(stored)) return std::nullopt;
  const StoredInstance* const filter = find(stored.endAt("Filter"));
  const StoredInstance* const handler = find(stored.endAt("Handler"));
  if (!filter || !handler) return std::nullopt;
  return Subscription{stored.name,  filter->name,       handler->name, handler->text("Destination"),
                      stored.until, selectedBy(*filter)};
}

/// What a change of an instance makes of subscriptions: of that one, or of those that lead to it.
void InteropTable::follow(const std::string& name) {
  for (const auto& [subscriber, stored] : _instances) {
    const bool concerned =
        stored->subscribes && (subscriber == name || std::ranges::any_of(stored->ends, [&](const auto& end) {
                                 return end.second == name;
                               }));
    if (!concerned) continue;
    ++_subscribed;
    _subscriptions.erase(subscriber);
    if (auto subscription = subscriptionOf(*stored))
      _subscriptions.emplace(subscriber, std::move(*subscription));
  }
}

std::vector<IndicationFilter> InteropTable::wantedFilters() const {
  std::set<std::string_view> wanted;
  for (const auto& [name, subscription] : _subscriptions) wanted.insert(subscription.filterName);
  std::vector<IndicationFilter> filters;
  for (const std::string_view name : wanted) {
    const StoredInstance& filter = *find(std::string(name));
    filters.push_back({filter.name, filter.text("Query"), filter.text("QueryLanguage")});
  }
  return filters;
}

std::vector<Subscription> InteropTable::subscriptions() const {
  std::vector<Subscription> list;
  list.reserve(_subscriptions.size());
  for (const auto& [name, subscription] : _subscriptions) list.push_back(subscription);
  return list;
}

}  // namespace ZebManager
