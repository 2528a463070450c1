#include "common/CmpiManagedInstanceCollection.h"

#include "cmpicpp/CmpiStatus.h"
#include "common/Configuration.h"

namespace ZEB {

using CmpiCpp::CmpiContext;
using CmpiCpp::CmpiInstance;
using CmpiCpp::CmpiInstanceResult;
using CmpiCpp::CmpiName;
using CmpiCpp::CmpiObjectPath;
using CmpiCpp::CmpiObjectPathResult;
using CmpiCpp::CmpiPropertyList;

namespace {

/// An object manager asks in the namespaces that the plug-in is registered in, and clients then name a system
/// of another one as if it were there.
CmpiObjectPath endMeantBy(const CmpiObjectPath& asked) {
  const auto configuration = Configuration::current();
  const auto& system = configuration->computerSystemPath;
  if (!system) return asked;
  CmpiObjectPath meant = asked;
  meant.setNameSpace(system->nameSpace());
  return meant == *system ? meant : asked;
}

}  // namespace

/// Restrictions of an association request; an empty name restricts nothing.
struct CmpiManagedInstanceCollection::Filter {
  const CmpiName& associationClass;
  const CmpiName& resultClass;
  const CmpiName& role;
  const CmpiName& resultRole;
};

CmpiManagedInstanceCollection::CmpiManagedInstanceCollection(const Logger& logger) : _logger(logger) {}
CmpiManagedInstanceCollection::~CmpiManagedInstanceCollection() = default;

void CmpiManagedInstanceCollection::createInstance(CmpiManagedInstance* instance) {
  std::unique_ptr<CmpiManagedInstance> owned(instance);
  const auto number = static_cast<std::uint32_t>(_instances.size());
  _instances.push_back(std::move(owned));
  _byClass[instance->className()].push_back(number);
  if (instance->watchesStatus()) _watchers.push_back(number);
  _byPath.add(instance->pathHash(), number);
  if (const auto* association = instance->association()) {
    _byEnd.add(association->firstEnd().hash(), number);
    _byEnd.add(association->secondEnd().hash(), number);
  }
}

void CmpiManagedInstanceCollection::clear() {
  _byClass.clear();
  _watchers.clear();
  _byPath.clear();
  _byEnd.clear();
  _instances.clear();
}

std::span<const std::uint32_t> CmpiManagedInstanceCollection::ofClass(const CmpiName& className) const {
  const auto found = _byClass.find(className);
  if (found == _byClass.end()) return {};
  return found->second;
}

CmpiManagedInstance* CmpiManagedInstanceCollection::getManagedInstance(const CmpiObjectPath& path) {
  CmpiManagedInstance* first = nullptr;
  for (const HashIndex::Entry& entry : _byPath.find(path.hash())) {
    CmpiManagedInstance& instance = *_instances[entry.number];
    if (!(instance.makeObjectPath() == path)) continue;
    if (instance.visible()) return &instance;
    if (!first) first = &instance;
  }
  return first;
}

template <class Visit>
void CmpiManagedInstanceCollection::forEachOfClass(const CmpiObjectPath& classPath, Visit&& visit) {
  for (const std::uint32_t number : ofClass(classPath.className())) {
    if (_instances[number]->visible()) visit(*_instances[number]);
  }
}

void CmpiManagedInstanceCollection::enumInstanceNames(CmpiObjectPathResult& result,
                                                      const CmpiContext& /*context*/,
                                                      const CmpiObjectPath& classPath) {
  forEachOfClass(classPath,
                 [&](CmpiManagedInstance& instance) { result.returnObjectPath(instance.makeObjectPath()); });
}

void CmpiManagedInstanceCollection::enumInstances(CmpiInstanceResult& result, const CmpiContext& /*context*/,
                                                  const CmpiObjectPath& classPath,
                                                  CmpiPropertyList properties) {
  forEachOfClass(classPath, [&](CmpiManagedInstance& instance) {
    result.returnInstance(instance.makeInstanceOf(properties));
  });
}

bool CmpiManagedInstanceCollection::getInstance(CmpiInstanceResult& result, const CmpiContext& /*context*/,
                                                const CmpiObjectPath& path, CmpiPropertyList properties) {
  CmpiManagedInstance* instance = getManagedInstance(path);
  if (!instance || !instance->visible()) return false;
  result.returnInstance(instance->makeInstanceOf(properties));
  return true;
}

// Calls `visit` with every visible association that `asked` is an end of and that passes the filter, and with
// its other end.
template <class Visit>
void CmpiManagedInstanceCollection::forEachAssociation(const CmpiObjectPath& asked, const Filter& filter,
                                                       Visit&& visit) {
  const CmpiObjectPath path = endMeantBy(asked);
  const auto classPasses = [&](const std::string& nameSpace, const CmpiName& className,
                               const CmpiName& wanted) {
    return wanted.empty() || _ancestry.isA(nameSpace, className, wanted);
  };
  const auto rolePasses = [](const CmpiName& role, const CmpiName& wanted) {
    return wanted.empty() || role == wanted;
  };

  for (const HashIndex::Entry& entry : _byEnd.find(path.hash())) {
    auto& association = static_cast<CmpiManagedInstanceAssociation&>(*_instances[entry.number]);
    if (!association.visible()) continue;
    const CmpiObjectPath other = association.otherEnd(path);
    if (other.empty()) continue;
    const bool isSecond = path == association.secondEnd();
    const auto roles = association.roles();
    if (rolePasses(isSecond ? roles.second : roles.first, filter.role) &&
        rolePasses(isSecond ? roles.first : roles.second, filter.resultRole) &&
        classPasses(asked.nameSpace(), association.className(), filter.associationClass) &&
        classPasses(other.nameSpace(), other.className(), filter.resultClass)) {
      visit(association, other);
    }
  }
}

void CmpiManagedInstanceCollection::associators(CmpiInstanceResult& result, const CmpiContext& /*context*/,
                                                const CmpiObjectPath& path, const CmpiName& associationClass,
                                                const CmpiName& resultClass, const CmpiName& role,
                                                const CmpiName& resultRole, CmpiPropertyList properties) {
  forEachAssociation(path, {associationClass, resultClass, role, resultRole},
                     [&](CmpiManagedInstanceAssociation&, const CmpiObjectPath& other) {
                       CmpiManagedInstance* instance = getManagedInstance(other);
                       if (!instance || !instance->visible()) return;
                       result.returnInstance(instance->makeInstanceOf(properties));
                     });
}

void CmpiManagedInstanceCollection::associatorNames(CmpiObjectPathResult& result,
                                                    const CmpiContext& /*context*/,
                                                    const CmpiObjectPath& path,
                                                    const CmpiName& associationClass,
                                                    const CmpiName& resultClass, const CmpiName& role,
                                                    const CmpiName& resultRole) {
  forEachAssociation(path, {associationClass, resultClass, role, resultRole},
                     [&](CmpiManagedInstanceAssociation&, const CmpiObjectPath& other) {
                       const CmpiManagedInstance* instance = getManagedInstance(other);
                       if (!instance || instance->visible()) result.returnObjectPath(other);
                     });
}

void CmpiManagedInstanceCollection::references(CmpiInstanceResult& result, const CmpiContext& /*context*/,
                                               const CmpiObjectPath& path, const CmpiName& resultClass,
                                               const CmpiName& role, CmpiPropertyList properties) {
  forEachAssociation(path, {resultClass, CmpiName(), role, CmpiName()},
                     [&](CmpiManagedInstanceAssociation& association, const CmpiObjectPath&) {
                       result.returnInstance(association.makeInstanceOf(properties));
                     });
}

void CmpiManagedInstanceCollection::referenceNames(CmpiObjectPathResult& result,
                                                   const CmpiContext& /*context*/, const CmpiObjectPath& path,
                                                   const CmpiName& resultClass, const CmpiName& role) {
  forEachAssociation(path, {resultClass, CmpiName(), role, CmpiName()},
                     [&](CmpiManagedInstanceAssociation& association, const CmpiObjectPath&) {
                       result.returnObjectPath(association.makeObjectPath());
                     });
}

}  // namespace ZEB
