#include "provider/InstanceBuild.h"

#include "classes/port/ZEB_EthernetPort.h"
#include "ethernet/RefreshScope.h"
#include "provider/Names.h"

namespace ZEB {

void ZEBEthernetPortProvider::_cmpiManagedInstanceFactory() {
  const RefreshScope refresh;
  InstanceBuild(*this).run();
}

ZEBEthernetPortProvider::InstanceBuild::InstanceBuild(ZEBEthernetPortProvider& provider)
    : _provider(provider), _nameSpace(kNameSpace.view()) {}

void ZEBEthernetPortProvider::InstanceBuild::run() {
  _provider._logger.info("_cmpiManagedInstanceFactory");
  buildAdapters();
}

void ZEBEthernetPortProvider::InstanceBuild::buildAdapters() {
  EthernetAdapterDataObject adapter(_provider._logger);
  int result = _provider._ethMRA->getFirstData(false, adapter);
  if (result != EthernetMRA::kDelivered) _provider._logger.error("failed to _ethMRA::getFirstData()");
  while (result == EthernetMRA::kDelivered) {
    buildAdapter(adapter);
    result = _provider._ethMRA->getNextData(false, adapter);
    if (result != EthernetMRA::kDelivered && result != EthernetMRA::kNoMoreData) {
      _provider._logger.error("failed to _ethMRA::getNextData()");
    }
    ++_adapterNumber;
  }
}

void ZEBEthernetPortProvider::InstanceBuild::buildAdapter(const EthernetAdapterDataObject& adapter) {
  physloc_t location = BMC_physloc_NULL;
  adapter.getPhysLoc(location);
  std::string partNumber;
  adapter.getpartNumber(partNumber);
  for (const EthernetPort& port : adapter.ports) {
    create<ZEB_EthernetPort>(_portNumber, _adapterNumber, location, partNumber, port);
    ++_portNumber;
  }
}

}  // namespace ZEB
