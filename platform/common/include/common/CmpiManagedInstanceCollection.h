#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <unordered_map>
#include <vector>

#include "cmpicpp/CmpiContext.h"
#include "cmpicpp/CmpiResult.h"
#include "common/ClassAncestry.h"
#include "common/CmpiManagedInstanceAssociation.h"
#include "common/HashIndex.h"
#include "common/Logger.h"

namespace ZEB {

/// Owns the managed instances of a provider, in the order of their creation, and answers CIM operations from
/// them. Several instances may share a path. What an operation costs grows with what it returns, not with the
/// size of the collection. One lock of the owner's has to cover every call that looks up or changes; `size`
/// and `getManagedInstance` by index need it only beside a change.
class CmpiManagedInstanceCollection {
 public:
  explicit CmpiManagedInstanceCollection(const Logger& logger);
  ~CmpiManagedInstanceCollection();
  CmpiManagedInstanceCollection(const CmpiManagedInstanceCollection&) = delete;
  CmpiManagedInstanceCollection& operator=(const CmpiManagedInstanceCollection&) = delete;

  /// Takes the instance over, also when this throws.
  void createInstance(CmpiManagedInstance* instance);
  /// Destroys every instance.
  void clear();

  std::size_t size() const { return _instances.size(); }
  CmpiManagedInstance& getManagedInstance(std::size_t index) { return *_instances[index]; }
  /// The indexes of the instances of exactly that class, and of those that watch their status; ascending.
  /// With many instances, each that is looked at costs a miss of the cache.
  std::span<const std::uint32_t> ofClass(const CmpiCpp::CmpiName& className) const;
  std::span<const std::uint32_t> watchers() const { return _watchers; }
  /// The first visible instance of that path, else the first of that path, else null.
  CmpiManagedInstance* getManagedInstance(const CmpiCpp::CmpiObjectPath& path);

  // The CIM operations. They answer visible instances alone; classes are matched exactly when enumerated and
  // with their descendants when filtering; a filter that names nothing restricts nothing, one that names what
  // does not exist leaves nothing.
  void enumInstanceNames(CmpiCpp::CmpiObjectPathResult& result, const CmpiCpp::CmpiContext& context,
                         const CmpiCpp::CmpiObjectPath& classPath);
  void enumInstances(CmpiCpp::CmpiInstanceResult& result, const CmpiCpp::CmpiContext& context,
                     const CmpiCpp::CmpiObjectPath& classPath, CmpiCpp::CmpiPropertyList properties);
  /// False when there is no visible instance of that path.
  bool getInstance(CmpiCpp::CmpiInstanceResult& result, const CmpiCpp::CmpiContext& context,
                   const CmpiCpp::CmpiObjectPath& path, CmpiCpp::CmpiPropertyList properties);
  /// An end that the collection does not hold, such as the computer system, has a name and no instance here.
  void associators(CmpiCpp::CmpiInstanceResult& result, const CmpiCpp::CmpiContext& context,
                   const CmpiCpp::CmpiObjectPath& path, const CmpiCpp::CmpiName& associationClass,
                   const CmpiCpp::CmpiName& resultClass, const CmpiCpp::CmpiName& role,
                   const CmpiCpp::CmpiName& resultRole, CmpiCpp::CmpiPropertyList properties);
  void associatorNames(CmpiCpp::CmpiObjectPathResult& result, const CmpiCpp::CmpiContext& context,
                       const CmpiCpp::CmpiObjectPath& path, const CmpiCpp::CmpiName& associationClass,
                       const CmpiCpp::CmpiName& resultClass, const CmpiCpp::CmpiName& role,
                       const CmpiCpp::CmpiName& resultRole);
  void references(CmpiCpp::CmpiInstanceResult& result, const CmpiCpp::CmpiContext& context,
                  const CmpiCpp::CmpiObjectPath& path, const CmpiCpp::CmpiName& resultClass,
                  const CmpiCpp::CmpiName& role, CmpiCpp::CmpiPropertyList properties);
  void referenceNames(CmpiCpp::CmpiObjectPathResult& result, const CmpiCpp::CmpiContext& context,
                      const CmpiCpp::CmpiObjectPath& path, const CmpiCpp::CmpiName& resultClass,
                      const CmpiCpp::CmpiName& role);

 private:
  struct Filter;

  template <class Visit>
  void forEachOfClass(const CmpiCpp::CmpiObjectPath& classPath, Visit&& visit);
  template <class Visit>
  void forEachAssociation(const CmpiCpp::CmpiObjectPath& path, const Filter& filter, Visit&& visit);

  Logger _logger;
  std::vector<std::unique_ptr<CmpiManagedInstance>> _instances;
  std::unordered_map<CmpiCpp::CmpiName, std::vector<std::uint32_t>> _byClass;
  std::vector<std::uint32_t> _watchers;
  HashIndex _byPath;
  HashIndex _byEnd;
  ClassAncestry _ancestry;
};

}  // namespace ZEB
