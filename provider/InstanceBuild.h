#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "ethernet/EthernetAdapterDataObject.h"
#include "provider/ZEBEthernetPortProvider.h"

namespace ZEB {

/// One build of all managed instances, from the data sources into the provider's collection: the counters
/// that number them and the steps in their order. The caller holds the collection mutex, or nobody can call
/// yet.
class ZEBEthernetPortProvider::InstanceBuild {
 public:
  explicit InstanceBuild(ZEBEthernetPortProvider& provider);

  void run();

 private:
  void buildAdapters();
  void buildAdapter(const EthernetAdapterDataObject& adapter);

  /// Makes an instance of a class and hands it to the collection, visible. `arguments` follow the logger and
  /// the namespace, which every class takes first.
  template <class Class, class... Arguments>
  Class& create(const Arguments&... arguments) {
    auto* instance = new Class(_provider._logger, _nameSpace, arguments...);
    _provider._collection.createInstance(instance);
    instance->setVisible(true);
    return *instance;
  }

  ZEBEthernetPortProvider& _provider;
  const std::string _nameSpace;
  std::uint32_t _adapterNumber = 1;
  std::uint32_t _portNumber = 1;  ///< goes on from one adapter to the next
};

}  // namespace ZEB
