#include "provider/ZEB_AutoStartEthernetPort.h"

#include "classes/port/PropertyTable.h"
#include "cmpicpp/CmpiFactories.h"
#include "provider/Names.h"

namespace ZEB {

ZEB_AutoStartEthernetPort::ZEB_AutoStartEthernetPort(const Logger& logger, const std::string& nameSpace)
    : ManagedObject(logger, nameSpace, kClassName, {{"ProviderName", kProviderName.view()}}) {}

CmpiCpp::CmpiInstance ZEB_AutoStartEthernetPort::makeInstance() {
  using P = Properties<const ManagedObject>;
  const PropertyRows<const ManagedObject> properties{
      P::key("ProviderName"),
      P::string("WorkerMethodNameSpace", constant(nameSpace())),
      P::uint16("WorkerPollInterval", constant(30)),
      P::uint16("WorkerPollIntervalStagger", constant(16)),
  };
  auto instance = CmpiCpp::makeCmpiInstance(ZEBUtil::getBroker(), makeObjectPath());
  properties.fill(instance, *this);
  return instance;
}

}  // namespace ZEB
