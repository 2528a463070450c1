// What the instances of the table are to each other: associations, and the subscriptions that they come to.
#include "indications/InteropTable.h"

namespace ZebManager {

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

std::vector<InteropTable::Enabled> InteropTable::enabledSubscriptions() const {
  std::vector<Enabled> enabled;
  for (const auto& [name, stored] : _instances) {
    const bool subscription = _repository.isA(stored->classDef().name, kSubscriptionClass);
    if (!subscription || !isEnabled(*stored)) continue;
    const StoredInstance* const filter = find(stored->endAt("Filter"));
    const StoredInstance* const handler = find(stored->endAt("Handler"));
    if (filter && handler) enabled.push_back({*stored, *filter, *handler});
  }
  return enabled;
}

std::vector<IndicationFilter> InteropTable::wantedFilters() const {
  std::map<std::string, const StoredInstance*> wanted;
  for (const Enabled& enabled : enabledSubscriptions()) wanted.emplace(enabled.filter.name, &enabled.filter);
  std::vector<IndicationFilter> filters;
  for (const auto& [name, filter] : wanted)
    filters.push_back({name, filter->text("Query"), filter->text("QueryLanguage")});
  return filters;
}

std::vector<Subscription> InteropTable::subscriptions() const {
  std::vector<Subscription> list;
  for (const auto& [subscription, filter, handler] : enabledSubscriptions()) {
    list.push_back(
        {subscription.name, filter.name, handler.name, handler.text("Destination"), subscription.until});
  }
  return list;
}

}  // namespace ZebManager
