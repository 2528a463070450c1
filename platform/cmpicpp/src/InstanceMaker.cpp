#include <algorithm>

#include "BrokerValues.h"
#include "cmpicpp/CmpiStatus.h"

namespace CmpiCpp {

CMPIInstance* InstanceMaker::make(const CmpiInstance& instance) {
  const CMPIObjectPath* path = toBroker(_broker, instance.path());
  CMPIStatus status{CMPI_RC_OK, nullptr};
  CMPIInstance* made = checked(_broker->eft->newInstance(_broker, path, &status), status,
                               "an instance of class ", instance.className().view());
  keepToList(made, instance.path());
  for (const Prefilled& property : prefilled(made, instance.path())) {
    if (!instance.findProperty(property.name.view())) {
      made->ft->setProperty(made, property.name.c_str(), nullptr, property.type);
    }
  }
  for (const CmpiInstance::Property& property : instance.properties()) {
    if (property.value.isNull()) {
      made->ft->setProperty(made, property.name.c_str(), nullptr, property.value.type());
    } else {
      const CMPIValue value = toBroker(_broker, property.value);
      made->ft->setProperty(made, property.name.c_str(), &value, property.value.type());
    }
  }
  return made;
}

// The list is honoured already where the instance was made; this is for what the object manager adds.
void InstanceMaker::keepToList(const CMPIInstance* made, const CmpiObjectPath& path) const {
  if (!_properties || !made->ft->setPropertyFilter) return;
  // Without the keys some object managers lose the path.
  std::vector<const char*> keys;
  for (const CmpiObjectPath::Key& key : path.keys()) keys.push_back(key.name.c_str());
  keys.push_back(nullptr);
  made->ft->setPropertyFilter(made, const_cast<const char**>(_properties), keys.data());
}

const std::vector<InstanceMaker::Prefilled>& InstanceMaker::prefilled(const CMPIInstance* fresh,
                                                                      const CmpiObjectPath& path) {
  const auto known = std::find_if(_classes.begin(), _classes.end(),
                                  [&](const auto& each) { return each.first == path.className(); });
  if (known != _classes.end()) return known->second;
  std::vector<Prefilled> found;
  const CMPICount count = fresh->ft->getPropertyCount(fresh, nullptr);
  for (CMPICount i = 0; i < count; ++i) {
    CMPIStatus status{CMPI_RC_OK, nullptr};
    CMPIString* name = nullptr;
    const CMPIData value = fresh->ft->getPropertyAt(fresh, i, &name, &status);
    if (status.rc != CMPI_RC_OK || !name || (value.state & (CMPI_nullValue | CMPI_notFound)) != 0) continue;
    const CmpiName property(fromBroker(name));
    // The keys come from the path.
    if (!path.findKey(property.view())) found.push_back({property, value.type});
  }
  return _classes.emplace_back(path.className(), std::move(found)).second;
}

}  // namespace CmpiCpp
