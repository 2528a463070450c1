// Object paths and instances.
#include "FakeTables.h"

namespace ZEB::test {

using CmpiCpp::CmpiData;
using CmpiCpp::CmpiObjectPath;

namespace {

CMPIStatus pathSetNameSpace(const CMPIObjectPath* path, const char* nameSpace) {
  as<FakeObjectPath>(path).value.setNameSpace(nameSpace);
  return kOk;
}

CMPIStatus pathSetHostname(const CMPIObjectPath* path, const char* host) {
  as<FakeObjectPath>(path).value.setHost(host);
  return kOk;
}

CMPIString* pathGetNameSpace(const CMPIObjectPath* path, CMPIStatus* status) {
  return Tables::text(path->hdl, status, as<FakeObjectPath>(path).value.nameSpace());
}

CMPIString* pathGetHostname(const CMPIObjectPath* path, CMPIStatus* status) {
  return Tables::text(path->hdl, status, as<FakeObjectPath>(path).value.host());
}

CMPIString* pathGetClassName(const CMPIObjectPath* path, CMPIStatus* status) {
  return Tables::text(path->hdl, status, as<FakeObjectPath>(path).value.className().str());
}

CMPIStatus pathAddKey(const CMPIObjectPath* path, const char* name, const CMPIValue* value,
                      const CMPIType type) {
  as<FakeObjectPath>(path).value.addKey(name, readValue(value, type));
  return kOk;
}

CMPIData pathGetKey(const CMPIObjectPath* path, const char* name, CMPIStatus* status) {
  const CmpiData* value = as<FakeObjectPath>(path).value.findKey(name);
  if (!value) return missing(status, CMPI_RC_ERR_NO_SUCH_PROPERTY);
  return readAt(path, name, *value, nullptr, status);
}

CMPIData pathGetKeyAt(const CMPIObjectPath* path, CMPICount index, CMPIString** name, CMPIStatus* status) {
  const auto& keys = as<FakeObjectPath>(path).value.keys();
  if (index >= keys.size()) return missing(status, CMPI_RC_ERR_NO_SUCH_PROPERTY);
  return readAt(path, keys[index].name, keys[index].value, name, status);
}

CMPICount pathGetKeyCount(const CMPIObjectPath* path, CMPIStatus* status) {
  answer(status);
  return static_cast<CMPICount>(as<FakeObjectPath>(path).value.keys().size());
}

CMPIString* pathToString(const CMPIObjectPath* path, CMPIStatus* status) {
  return Tables::text(path->hdl, status, as<FakeObjectPath>(path).value.str());
}

const CMPIObjectPathFT kObjectPathTable = {CMPIVersion200,
                                           Tables::release<FakeObjectPath, CMPIObjectPath>,
                                           Tables::clone<FakeObjectPath, CMPIObjectPath>,
                                           pathSetNameSpace,
                                           pathGetNameSpace,
                                           pathSetHostname,
                                           pathGetHostname,
                                           nullptr,
                                           pathGetClassName,
                                           pathAddKey,
                                           pathGetKey,
                                           pathGetKeyAt,
                                           pathGetKeyCount,
                                           nullptr,
                                           nullptr,
                                           nullptr,
                                           nullptr,
                                           nullptr,
                                           nullptr,
                                           pathToString};

CMPIData instanceGetProperty(const CMPIInstance* instance, const char* name, CMPIStatus* status) {
  const CmpiData* value = as<FakeInstance>(instance).value.findProperty(name);
  if (!value) return missing(status, CMPI_RC_ERR_NO_SUCH_PROPERTY);
  return readAt(instance, name, *value, nullptr, status);
}

CMPIData instanceGetPropertyAt(const CMPIInstance* instance, CMPICount index, CMPIString** name,
                               CMPIStatus* status) {
  const auto& properties = as<FakeInstance>(instance).value.properties();
  if (index >= properties.size()) return missing(status, CMPI_RC_ERR_NO_SUCH_PROPERTY);
  return readAt(instance, properties[index].name, properties[index].value, name, status);
}

CMPICount instanceGetPropertyCount(const CMPIInstance* instance, CMPIStatus* status) {
  answer(status);
  return static_cast<CMPICount>(as<FakeInstance>(instance).value.properties().size());
}

CMPIStatus instanceSetProperty(const CMPIInstance* instance, const char* name, const CMPIValue* value,
                               CMPIType type) {
  as<FakeInstance>(instance).value.addProperty(name, readValue(value, type));
  return kOk;
}

CMPIObjectPath* instanceGetObjectPath(const CMPIInstance* instance, CMPIStatus* status) {
  answer(status);
  return of(instance).make<FakeObjectPath>(as<FakeInstance>(instance).value.path());
}

const CMPIInstanceFT kInstanceTable = {CMPIVersion200,
                                       Tables::release<FakeInstance, CMPIInstance>,
                                       Tables::clone<FakeInstance, CMPIInstance>,
                                       instanceGetProperty,
                                       instanceGetPropertyAt,
                                       instanceGetPropertyCount,
                                       instanceSetProperty,
                                       instanceGetObjectPath,
                                       nullptr,
                                       nullptr,
                                       nullptr};

}  // namespace

FakeObjectPath::FakeObjectPath(FakeBroker& broker, CmpiObjectPath theValue)
    : CMPIObjectPath{&broker, &kObjectPathTable}, value(std::move(theValue)) {}
FakeInstance::FakeInstance(FakeBroker& broker, CmpiCpp::CmpiInstance theValue)
    : CMPIInstance{&broker, &kInstanceTable}, value(std::move(theValue)) {}

}  // namespace ZEB::test
