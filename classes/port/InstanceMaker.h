#pragma once

#include <string>

#include "common/CmpiManagedInstanceCollection.h"
#include "common/InstanceMemories.h"
#include "common/Logger.h"
#include "common/ZEBUtil.h"

namespace ZEB {

/// Makes the instances of a build, tells them what others before them remembered, and hands them to the
/// collection, visible. The caller holds the
/// collection's lock, or nobody can call yet.
class InstanceMaker {
 public:
  InstanceMaker(const Logger& logger, std::string nameSpace, CmpiManagedInstanceCollection& instances,
                const InstanceMemories& memories)
      : _logger(logger),
        _nameSpace(std::move(nameSpace)),
        _instances(instances),
        _memories(memories),
        _system(ZEBUtil::getComputerSystemPath()) {}

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
  /// Likewise, for an instance that is only needed as the end of associations.
  template <class Class, class... Arguments>
  CmpiCpp::CmpiObjectPath createEnd(const Arguments&... arguments) const {
    return create<Class>(arguments...).makeObjectPath();
  }

 private:
  const Logger& _logger;
  const std::string _nameSpace;
  CmpiManagedInstanceCollection& _instances;
  const InstanceMemories& _memories;
  const CmpiCpp::CmpiObjectPath _system;
};

}  // namespace ZEB
