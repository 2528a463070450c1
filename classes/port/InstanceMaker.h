#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "common/CmpiManagedInstanceCollection.h"
#include "common/InstanceMemories.h"
#include "common/Logger.h"
#include "common/ZEBUtil.h"

namespace ZEB {

/// Makes the instances of a build, tells them what others before them remembered, and hands them to the
/// collection, visible. The caller holds the collection's lock, or nobody can call yet.
class InstanceMaker {
 public:
  /// `asked`: the classes that anybody will ask for, none of them an association; empty for any.
  InstanceMaker(const Logger& logger, std::string nameSpace, CmpiManagedInstanceCollection& instances,
                const InstanceMemories& memories, std::vector<CmpiCpp::CmpiName> asked)
      : _logger(logger),
        _nameSpace(std::move(nameSpace)),
        _instances(instances),
        _memories(memories),
        _system(ZEBUtil::getComputerSystemPath()),
        _asked(std::move(asked)) {}

  const Logger& logger() const { return _logger; }
  /// The computer system that everything is a part of.
  const CmpiCpp::CmpiObjectPath& system() const { return _system; }

  /// `arguments` follow the logger and the namespace, which every class takes first.
  template <class Class, class... Arguments>
  Class& create(Arguments&&... arguments) const {
    auto* instance = new Class(_logger, _nameSpace, arguments...);
    _instances.createInstance(instance);
    instance->setVisible(true);
    _memories.giveTo(*instance);
    return *instance;
  }
  /// Likewise, for an instance that the build needs as the end of associations alone. An empty path when it
  /// is not asked for.
  template <class Class, class... Arguments>
  CmpiCpp::CmpiObjectPath createEnd(const Arguments&... arguments) const {
    if (!makesAll() && std::ranges::find(_asked, CmpiCpp::CmpiName(Class::kClassName)) == _asked.end())
      return {};
    return create<Class>(arguments...).makeObjectPath();
  }
  /// Likewise, for an association, unless none is asked for.
  template <class Association, class... Arguments>
  void tie(Arguments&&... arguments) const {
    if (makesAll()) create<Association>(arguments...);
  }
  /// Whether any class may be asked for, associations among them.
  bool makesAll() const { return _asked.empty(); }

 private:
  const Logger& _logger;
  const std::string _nameSpace;
  CmpiManagedInstanceCollection& _instances;
  const InstanceMemories& _memories;
  const CmpiCpp::CmpiObjectPath _system;
  const std::vector<CmpiCpp::CmpiName> _asked;
};

}  // namespace ZEB
